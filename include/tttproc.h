/// @file
/// `TTT`, the translatable message, and the slots of the dictionaries that render it.
///
/// Failure style: building a message fails only with `std::bad_alloc`, which leaves it as it was.
/// Rendering reports problems inside the text; bytes that end before an argument is complete throw
/// `Bag::Exception`.
#pragma once

#include <string>

#include "bag.h"
#include "common_core_api.h"

class IDLocLoader;

/// The slot of a dictionary in `TTT::dictionaries`.
enum LocDictionaryId {
  LocDictionary0 = 0,           ///< the slot of the short entry form; the client program's
  LocDictionary1 = 1,           ///< the client program's
  LocDictionary2 = 2,           ///< the client program's
  LocDictionary3 = 3,           ///< the library's own, under its plain name
  LocDictionary4 = 4,           ///< the client program's
  LocDictionaryCommonCore = 3,  ///< the library's own dictionary, `common_core`
};

/// A message that is turned into text only when somebody asks, in the language loaded then.
///
/// It holds the bytes of one or more entries: ready-made texts, or message numbers of a dictionary
/// followed by the arguments that the message's placeholders consume, in their order. A failing
/// operation throws a `TTT` by value; whoever catches it asks `makeMulti` for the text or
/// `getErrorCode` for the numbers. The layout of the bytes stands in docs/formats.md.
///
/// Reading changes nothing in the message, its cursor included. Dictionaries must not be loaded
/// while a message is rendered on another thread; `makeMulti` itself may load one.
class COMMON_CORE_API TTT {
 public:
  /// A message without entries; renders as the empty text.
  TTT() = default;
  /// A copy of all bytes of `other`, wherever its cursor stands.
  TTT(const TTT& other);
  /// Takes the bytes of `other`, which is empty afterwards.
  TTT(TTT&& other) noexcept;
  /// A copy of the data of `bytes`, taken as the bytes of a message.
  TTT(const Bag& bytes);  // NOLINT(google-explicit-constructor)
  /// One ready-made text; null reads as the empty text.
  TTT(const char* text);  // NOLINT(google-explicit-constructor)
  /// One ready-made text: the characters of `text` up to its first 0.
  TTT(const std::string& text);  // NOLINT(google-explicit-constructor)
  /// The head of message `number` of `dictionary`; its arguments follow with `operator<<`.
  TTT(LocDictionaryId dictionary, int number);
  ~TTT() = default;

  /// Becomes a copy of all bytes of `other`.
  TTT& operator=(const TTT& other);
  /// Takes the bytes of `other`, which is empty afterwards.
  TTT& operator=(TTT&& other) noexcept;
  /// Becomes a copy of the data of `bytes`, which may be this message's own.
  TTT& operator=(const Bag& bytes);

  /// Appends the entries of `other`, which may be this very message; an empty one appends nothing.
  TTT& operator<=(const TTT& other);
  /// Appends the data of `bytes`, taken as entries; it may be this message's own.
  TTT& operator<=(const Bag& bytes);
  /// Appends a ready-made text; null reads as the empty text.
  TTT& operator<=(const char* text);
  /// Appends a ready-made text: the bytes of the slice, which end at their first 0 on rendering.
  TTT& operator<=(const ChPair& text);

  /// Appends an integer argument, for "%d", "%u" or (a message number of the same dictionary) "%i".
  TTT& operator<<(int value);
  /// Appends a text argument, for "%s"; null reads as the empty text.
  TTT& operator<<(const char* text);

  /// Reports the dictionary and the message number of the first entry: 0 and -1 for a ready-made
  /// text. Either pointer may be null. Never throws: false when the bytes end too early; what was
  /// not read is then 0 and -1.
  bool getErrorCode(int* dictionary, int* code) const;

  /// Renders every entry into `out`, each from the dictionary of its slot in `dictionaries`, one
  /// text right after the other. The library's own dictionary, when nobody registered it, is loaded
  /// in English on the spot; when that fails `out` is the text of the loading error. A dictionary
  /// that is not loaded, or a number that it does not hold, makes `out` exactly "Some .loc
  /// dictionary is not loaded". An unknown entry or placeholder stops the rendering; what was
  /// rendered before stays. Throws `Bag::Exception` when the bytes end before an argument is
  /// complete, and `std::bad_alloc`; `out` then holds what was rendered before.
  void makeMulti(std::string& out) const;
  /// Renders every entry from the one `dictionary`, whatever slot the entry names.
  void make(IDLocLoader& dictionary, std::string& out) const;
  /// The worker of both: renders `message` from a table of five slots (`multi`) or of one. With a
  /// null `slots` only ready-made texts can be rendered.
  static void make(IDLocLoader** slots, const Bag& message, std::string& out, bool multi);

  /// The bytes of the message, for saving or sending.
  const Bag& getBag() const { return bag; }

  /// The dictionary of each slot, null where none is registered. Slot 3 is the library's own; the
  /// others are set by the client program. Nothing clears a slot again.
  static IDLocLoader* dictionaries[5];

 private:
  Bag bag;
};

#if defined(__i386__)
static_assert(sizeof(TTT) == 16);
#endif

/// @file
/// `MLDoc`, the reader, and `MLDocOut`, the writer, of markup documents.
///
/// Failure style: both throw a `TTT`. A reader's failure names the document, the line and the
/// column; a writer's failure is that of its file. Memory failure is `std::bad_alloc`, except where
/// a document's text cannot be allocated (message 23).
///
/// The format is a small subset of XML: start, end and empty-element tags with ASCII names,
/// attributes in double quotes, the five named entities, and instructions and comments, which are
/// stepped over. docs/formats.md has the grammar.
#pragma once

#include "bag.h"
#include "charr.h"
#include "chpair.h"
#include "common_core_api.h"
#include "fileproc.h"
#include "pairtag.h"
#include "tttproc.h"

/// A markup document and one read position in it.
///
/// Holds the whole text and walks it tag by tag; no tree is built and nothing is copied: tokens,
/// attributes and contents are slices of the text, valid until the document is loaded again or
/// released. One walk over a document at a time, on one thread.
class COMMON_CORE_API MLDoc {
 public:
  /// One piece of markup, described by slices of the document's text.
  ///
  /// A fresh token, whose `tag` begins with null, stands for the level of the whole document.
  struct COMMON_CORE_API Token {
    /// Kinds of markup.
    enum Type {
      Element = 0,      ///< a start tag, an end tag or an empty-element tag
      Instruction = 1,  ///< from `<?` to `>`
      Comment = 2,      ///< from `<!` to `-->`
    };
    ChPair name;           ///< element name; instructions and comments leave the previous one
    ChPair tag;            ///< the whole markup, from its `<` to just past its `>`
    int type = Element;    ///< one of `Type`
    int depth = 0;         ///< nesting depth after this markup, carried on by `step`
    bool opening = false;  ///< true for a start tag and an empty-element tag
    bool closing = false;  ///< true for an end tag and an empty-element tag
  };

  /// One attribute of a tag.
  struct COMMON_CORE_API Attribute {
    ChPair name;   ///< attribute name
    ChPair value;  ///< the bytes between the quotes, trimmed of line breaks; entities not decoded
  };

  /// Visits the direct children of an element, or the top-level elements, by stepping the caller's
  /// token forward in place. Borrows the document and the token.
  class COMMON_CORE_API ChildIterator {
   public:
    /// Prepares to visit the children of the element whose start tag `parent` holds; reading goes
    /// on just past that tag. A fresh token means the document level; an empty-element tag or an
    /// end tag has no children. `document` and `parent` must outlive the iterator, which steps
    /// `parent`.
    ChildIterator(MLDoc* document, Token& parent);
    /// Moves the token to the next direct child's start or empty-element tag. False when there is
    /// none: the token is then on the parent's end tag, and an enclosing iterator goes on behind
    /// it. Throws error 7, placed at the parent's start tag, when the text ends inside the parent,
    /// and the errors of `step`.
    bool operator()();
    /// The same for the next direct child called `wanted`, byte for byte.
    bool operator()(const ChPair& wanted);

   private:
    int level;           // depth inside the parent; -1 when finished
    unsigned int start;  // offset just past the parent's tag
    Token* token;
    MLDoc* doc;
  };

  /// Finds attributes of a tag by name. While it lives the document is positioned inside the tag;
  /// its end positions it just past the tag. Borrows the document and the token.
  class COMMON_CORE_API AttributeIterator {
   public:
    /// Starts at the first attribute of `tag`, which was read from `document`.
    AttributeIterator(MLDoc* document, const Token& tag);
    AttributeIterator(const AttributeIterator&) = delete;
    AttributeIterator& operator=(const AttributeIterator&) = delete;
    /// Positions the document just past the tag.
    ~AttributeIterator();
    /// Reads attributes until one is called `wanted`, byte for byte: true, and `attribute` holds
    /// it. False when none is left. Throws the errors of `MLDoc::attribute`.
    bool operator()(Attribute& attribute, const ChPair& wanted);

   private:
    MLDoc* doc;
    const Token* token;
  };

  /// A document without text.
  MLDoc() = default;
  MLDoc(const MLDoc&) = delete;
  MLDoc& operator=(const MLDoc&) = delete;
  /// Frees the text.
  virtual ~MLDoc();

  // ------------------------------------------------------------------ loading

  /// Takes a copy of the `size` bytes at `data` as the document, called `newName` in messages. Both
  /// may point into this very document. Throws message 29 for a size above 100,000,000 or below 0
  /// and message 23 when memory does not suffice, with message 25 when there is a name; the
  /// document then has no text.
  void load(const char* newName, const char* data, int size);
  /// Reads the file at `path`, of at most 100,000,000 bytes, as the document, called by its path. A
  /// UTF-8 byte-order mark at its start is skipped. Throws the messages of `UTF8File::load`; the
  /// document then has no text.
  void load(const char* path);
  /// Frees the text. The document is then at its end.
  void release();

  // ------------------------------------------------------------------ walking

  /// Reads the next markup into `token`; false, with `token` untouched, when the text has no
  /// further `<`. Throws errors 0, 11, 14, 22, 30 and 36; the position is then where reading
  /// stopped, and a further call goes on from there.
  bool step(Token& token);

  /// Reads the next attribute of the tag in `token` into `attribute`, starting with the first when
  /// the position is outside the tag; false, positioned just past the tag, when there are no more.
  /// Line breaks at both ends of a value are left out; other control bytes inside it are
  /// overwritten in the text with spaces, after one call of `warning`. Throws errors 1, 2, 5, 6,
  /// 13, 15, 18, 31 and 33.
  bool attribute(const Token& token, Attribute& attribute);

  /// The raw value of the attribute of `token` called `wanted`, or a null slice. Positions the
  /// document just past the tag. Throws the errors of `attribute`.
  ChPair getAttributeValue(const Token& token, const ChPair& wanted);

  /// The raw text between the start tag in `token`, which was read last, and the end tag that must
  /// follow it; entities are not decoded. The element is closed afterwards: the depth of `token` is
  /// lowered and the position is just past the end tag. Throws error 24 when anything but plain
  /// text stands there.
  ChPair content(Token& token);

  // ------------------------------------------------------------------ values

  /// Decodes the entities of `source`, which may lie in the text of `out`, into `out`. Throws
  /// error 34 for anything but the five named entities after a `&`; `out` then holds what was
  /// decoded before.
  void convertEscape(const ChPair& source, ChArr& out);
  /// The decimal integer that fills `number`: an optional sign and digits, 1 to 20 bytes, magnitude
  /// of at most 9,223,372,036,854,775,807. Throws error 20.
  long long getInt(const ChPair& number) const;
  /// The number that fills `number`, as `strtod` reads it, always with '.' as decimal point. Throws
  /// error 19 for anything else, a value out of range, an empty or null slice, and a slice that
  /// ends inside a longer number of the document's text. Reads nothing behind the document's text.
  double getDouble(const ChPair& number) const;
  /// `getInt` kept to 32 bits; -1 stands for infinity.
  int getCountOrInfinity(const ChPair& number) const;
  /// Number of the warning about control bytes in an attribute's value: 16.
  int getEndLineInAttributeWarningCode();

  // ------------------------------------------------------------------ errors

  /// Line and column, both from 1, of the byte at the read position. Columns count characters; a
  /// TAB goes to the next of the columns 1, 5, 9, …; carriage returns count nothing.
  void getPosition(int& line, int& column) const;
  /// Appends the document's name (message 25) and the position (message 21) to `message`.
  void formMessage(TTT& message) const;
  /// Throws `message` as an error of this document: between the heading (message 37) and what
  /// `formMessage` appends; alone when the document has no name.
  [[noreturn]] void erro(const TTT& message) const;
  /// The same for message `code` of `dictionary`.
  [[noreturn]] void erro(LocDictionaryId dictionary, int code) const;

 protected:
  /// Called for a warning about `attribute` of `token`; does nothing here. A derived class may
  /// collect it, or throw: the exception passes on to the reader's caller.
  virtual void warning(const TTT& message, const Token& token, Attribute& attribute);

  unsigned int textSize = 0;  ///< number of bytes in `text`
  unsigned int position = 0;  ///< offset of the next byte to read, never above `textSize`
  char* text = nullptr;       ///< the document, owned, not terminated; null when there is none
  ChArr name;                 ///< the document's name in messages; kept by `release`

 private:
  COMMON_CORE_HIDDEN bool anyStep(Token& token);
  COMMON_CORE_HIDDEN bool anyAttribute(const Token& token, Attribute& attribute);
};

/// A streaming writer of markup documents to a file, a bag, or both.
///
/// One element: `beginItem`, its attributes, then `endItem(nullptr)`, or `beginChildren`, children
/// or text, and `endItem(name)`. Calls must pair; names are not checked. Used by one thread.
class COMMON_CORE_API MLDocOut {
 public:
  /// A writer without a target.
  MLDocOut();
  MLDocOut(const MLDocOut&) = delete;
  MLDocOut& operator=(const MLDocOut&) = delete;
  /// Closes a file still open, silently: call `end` where failures matter.
  ~MLDocOut();

  // ------------------------------------------------------------------ targets

  /// Creates or empties the file at `path` as target; called while no file is open. Returns true.
  bool begin(const char* path);
  /// Sets the bag that output is written to, at its cursor, beside a file, if any; not owned. Null
  /// removes it.
  void begin(Bag* target);
  /// Closes the file, if one is open. The bag stays.
  void end();

  // ------------------------------------------------------------------ raw output

  /// Writes `size` bytes to the targets.
  void write(const char* data, int size);
  /// Writes the zero-terminated text; null writes nothing.
  void write(const char* text);
  /// Writes the text and `newLine`.
  void writeLn(const char* text);
  /// Writes the formatted text, cut to 4,095 bytes.
  void writef(const char* format, ...) COMMON_CORE_PRINTF(2, 3);
  /// Writes the indentation of the current level; nothing for a negative one.
  void writeIndent();
  /// Writes the bytes with `"`, ``'``, `&`, `<` and `>` as entities.
  void writeEscaped(const char* begin, const char* end);
  /// The same for a zero-terminated text; null writes nothing.
  void writeEscaped(const char* text);
  /// Escapes `source` into `out`, which becomes null for an empty source.
  static void escapeString(const ChPair& source, ChArr& out);

  // ------------------------------------------------------------------ structure

  /// Opens an element: indentation, `<` and its name. The level rises by one.
  void beginItem(const char* name);
  /// Ends the start tag, so that children or text can follow.
  void beginChildren();
  /// Closes the element and lowers the level: with a name by its end tag, with null as an empty
  /// element.
  void endItem(const char* name);

  // ------------------------------------------------------------------ attributes

  /// Writes an unsigned decimal value; nothing when it is 0 and `skipZero` is set.
  void writeUIntAttr(const char* name, unsigned int value, bool skipZero);
  /// Writes a signed decimal value; nothing when it is 0 and `skipZero` is set.
  void writeIntAttr(const char* name, int value, bool skipZero);
  /// Writes the value as `%f` prints it, always with '.'; nothing when it is 0 and `skipZero` is
  /// set.
  void writeDoubleAttr(const char* name, double value, bool skipZero);
  /// Writes `time`, seconds since 1970-01-01 00:00 UTC, as `YYYY-MM-DDThh:mm:ss` in UTC; nothing
  /// when it is 0 and `skipZero` is set, or when it has no calendar date.
  void writeDateAttr(const char* name, long time, bool skipZero);
  /// Writes the escaped text; nothing when it is null or empty and `skipEmpty` is set.
  void writeStrAttr(const char* name, const char* value, bool skipEmpty);
  /// Writes the escaped bytes of the slice.
  void writePairAttr(const char* name, const ChPair& value);
  /// Writes the table's name for `value`, not escaped; nothing when the table has none.
  void writeEnumAttr(const char* name, unsigned int value, const PairTag* table);
  /// Writes the names, with a space between, of the entries that share a bit with `flags`; each
  /// bit counts for the first entry that covers it, and bits without a name are dropped.
  void writeFlagsAttr(const char* name, unsigned int flags, const PairTag* table);

 private:
  class Piece;  // assembles what one call writes

  int level = 0;

 public:
  /// True: every attribute and every tag end stands on a line of its own. Set before writing.
  bool multiLine = true;

 private:
  UTF8File file;
  Bag* bag = nullptr;
  Bag indentCache;

 public:
  const char* newLine = "\n";  ///< the line end written after lines; set before writing
  int indentSize = 0;  ///< spaces per level; 0 or less: one TAB per level. Set before writing
};

#if defined(__i386__)
static_assert(sizeof(MLDoc) == 20 && sizeof(MLDoc::Token) == 28 && sizeof(MLDoc::Attribute) == 16);
static_assert(sizeof(MLDoc::ChildIterator) == 16 && sizeof(MLDoc::AttributeIterator) == 8);
static_assert(sizeof(MLDocOut) == 48);
#endif

// The settings of a directory of documents, and the state that is kept of them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "mlproc.h"

namespace settingsd {

/// Numbers of the daemon's own messages, in slot 0.
enum Message {
  MessageNoName = 0,
  MessageUnknownKind = 1,
  MessageOutOfRange = 2,
  MessageAlreadyRunning = 3,
  MessageStarted = 4,
  MessageChanged = 5,
  MessageStopped = 6,
};

/// One setting as its document gives it.
struct Setting {
  int kind = 0;
  unsigned int flags = 0;
  std::string value;
  bool operator==(const Setting& other) const {
    return kind == other.kind && flags == other.flags && value == other.value;
  }
};

/// Settings by name.
using Settings = std::map<std::string, Setting>;

/// Values and names of the kinds of settings, and of their flags.
extern const PairTag kKinds[];
extern const PairTag kFlags[];

/// The text of a message in the user's language, as a line.
std::string lineOf(const TTT& message);

/// What a directory of documents says.
struct Reading {
  Settings settings;
  std::vector<std::string> problems;  ///< texts of what is wrong, in the order of the documents
  int documents = 0;                  ///< how many were read without an error
};

/// Reads every document of the directory (a path that ends with "/"). A document with an error
/// gives what stands before the error, and the rest goes on.
Reading readDirectory(const std::string& directory);

/// Keeps the settings as a record stream, one bag each; reads them back. A missing or damaged
/// stream gives what can be read of it.
void saveState(const std::string& path, const Settings& settings);
void loadState(const std::string& path, Settings& settings);

/// Writes the settings as a document.
void saveDocument(const std::string& path, const Settings& settings);

}  // namespace settingsd

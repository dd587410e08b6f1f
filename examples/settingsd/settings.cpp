// Reads settings from documents: typed attributes, names from tables, and for whatever is wrong a
// message that carries the document, the line and the column.

#include "settings.h"

#include <algorithm>

#include "ffproc.h"

namespace settingsd {

const PairTag kKinds[] = {{"integer", 0}, {"number", 1}, {"text", 2}, {"switch", 3}, {nullptr, 0}};
const PairTag kFlags[] = {{"shown", 1}, {"locked", 2}, {"advanced", 4}, {nullptr, 0}};

namespace {

const PairTag kSwitch[] = {{"off", 0}, {"on", 1}, {"no", 0}, {"yes", 1}, {nullptr, 0}};

std::string decoded(MLDoc& doc, const ChPair& raw) {
  ChArr text;
  doc.convertEscape(raw, text);
  return text.c_str();
}

unsigned int readFlags(ChPair names) {
  unsigned int flags = 0;
  ChPair name;
  while (!names.trimmed().isEmpty()) {
    if (!names.split(name, ' ', names)) {
      name = names;
      names = ChPair();
    }
    const int flag = kFlags[0].translate(name);
    if (flag > 0) flags |= static_cast<unsigned int>(flag);
  }
  return flags;
}

void checkInteger(MLDoc& doc, const MLDoc::Token& token, const std::string& name,
                  const ChPair& raw) {
  const ChPair min = doc.getAttributeValue(token, "min");
  const ChPair max = doc.getAttributeValue(token, "max");
  const long long value = doc.getInt(raw);
  if (min.isEmpty() || max.isEmpty()) return;
  const long long low = doc.getInt(min);
  const long long high = doc.getInt(max);
  if (value < low || value > high)
    doc.erro(TTT(LocDictionary0, MessageOutOfRange)
             << name.c_str() << static_cast<int>(low) << static_cast<int>(high));
}

void readSetting(MLDoc& doc, MLDoc::Token& token, Settings& settings) {
  const std::string name = decoded(doc, doc.getAttributeValue(token, "name"));
  if (name.empty()) doc.erro(LocDictionary0, MessageNoName);
  Setting setting;
  setting.kind = kKinds[0].translate(doc.getAttributeValue(token, "kind"));
  setting.flags = readFlags(doc.getAttributeValue(token, "flags"));
  ChPair raw = doc.getAttributeValue(token, "value");
  if (raw.isEmpty() && !token.closing) raw = doc.content(token);
  switch (setting.kind) {
    case 0:
      checkInteger(doc, token, name, raw);
      break;
    case 1:
      doc.getDouble(raw);
      break;
    case 2:
      break;
    case 3:
      setting.kind = kSwitch[0].translate(raw) < 0 ? -1 : 3;
      break;
    default:
      break;
  }
  if (setting.kind < 0) doc.erro(TTT(LocDictionary0, MessageUnknownKind) << name.c_str());
  setting.value = decoded(doc, raw);
  settings[name] = setting;
}

void readDocument(const std::string& path, Reading& reading) {
  MLDoc doc;
  MLDoc::Token token;
  try {
    doc.load(path.c_str());
    for (MLDoc::ChildIterator top(&doc, token); top("settings");)
      for (MLDoc::ChildIterator child(&doc, token); child("setting");)
        readSetting(doc, token, reading.settings);
    ++reading.documents;
  } catch (const TTT& failure) {
    reading.problems.push_back(lineOf(failure));
  }
}

}  // namespace

std::string lineOf(const TTT& message) {
  std::string text;
  message.makeMulti(text);
  return text += '\n';
}

Reading readDirectory(const std::string& directory) {
  std::vector<std::string> names;
  ZFindFile files(directory.c_str());
  while (files.next()) names.emplace_back(files.entry->d_name);
  std::sort(names.begin(), names.end());
  Reading reading;
  for (const std::string& name : names)
    if (name.size() > 4 && name.compare(name.size() - 4, 4, ".xml") == 0)
      readDocument(directory + name, reading);
  return reading;
}

}  // namespace settingsd

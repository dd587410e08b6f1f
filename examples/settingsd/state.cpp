// The state: a record stream with one bag a setting, for the daemon itself, and a document, for
// whoever wants to read it. Both replace their file whole or not at all.

#include "settings.h"

namespace settingsd {

void saveState(const std::string& path, const Settings& settings) {
  const std::string fresh = path + ".new";
  UTF8File file(true);
  file.open(fresh.c_str(), UTF8File::ModeWrite);
  for (const auto& [name, setting] : settings) {
    Bag record;
    record.putDataAligned(&setting.kind, sizeof setting.kind, 4);
    record.putDataAligned(&setting.flags, sizeof setting.flags, 4);
    record.putString(name.c_str());
    record.putString(setting.value.c_str());
    file.push(record);
  }
  file.close();
  file.rename(fresh.c_str(), path.c_str());
}

void loadState(const std::string& path, Settings& settings) {
  UTF8File file(false);
  if (!file.open(path.c_str(), UTF8File::ModeRead)) return;
  try {
    for (Bag record; file.pop(record);) {
      Setting setting;
      record.getDataAligned(&setting.kind, sizeof setting.kind, 4);
      record.getDataAligned(&setting.flags, sizeof setting.flags, 4);
      const std::string name = record.getStringPtr();
      setting.value = record.getStringPtr();
      settings[name] = setting;
    }
  } catch (const Bag::Exception&) {
    // A record that somebody damaged: the documents give the setting anew.
  }
}

void saveDocument(const std::string& path, const Settings& settings) {
  Bag bag;
  MLDocOut out;
  out.multiLine = false;
  out.indentSize = 2;
  out.begin(&bag);
  out.beginItem("settings");
  out.beginChildren();
  for (const auto& [name, setting] : settings) {
    out.beginItem("setting");
    out.writeStrAttr("name", name.c_str(), false);
    out.writeEnumAttr("kind", static_cast<unsigned int>(setting.kind), kKinds);
    out.writeFlagsAttr("flags", setting.flags, kFlags);
    out.writeStrAttr("value", setting.value.c_str(), false);
    out.endItem(nullptr);
  }
  out.endItem("settings");
  UTF8File::saveAtomic(path.c_str(), bag);
}

}  // namespace settingsd

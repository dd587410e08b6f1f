// Whole failures in every language, from their cause to the text that a person reads.
#include <gtest/gtest.h>

#include "fileproc.h"
#include "loc_loader.h"
#include "loc_module.h"
#include "mlproc.h"

namespace {

/// The text of what `action` throws.
template <class Action>
std::string textOf(Action action) {
  std::string out;
  try {
    action();
  } catch (const TTT& error) {
    error.makeMulti(out);
  }
  return out;
}

TEST(Texts, ReadAsOneMessage) {
  // How the messages are joined; the wording of each is that of its document.
  const struct {
    const char *language, *document, *file;
  } rows[] = {
      {"eng",
       "The document contains an error.\nA tag has no element name. * as \"&lt;\".\n"
       "File: settings.xml\nLine 2, column 5",
       "The file could not be opened.\nFile: /none/file\nSystem message: *"},
      {"deu",
       "Das Dokument enthält einen Fehler.\nIn einem Tag fehlt der Elementname. * geschrieben.\n"
       "Datei: settings.xml\nZeile 2, Spalte 5",
       "Die Datei konnte nicht geöffnet werden.\nDatei: /none/file\nSystemmeldung: *"},
      {"zho", "文档包含错误。\n*\n文件：settings.xml\n第 2 行，第 5 列",
       "无法打开文件。\n文件：/none/file\n系统消息：*"},
  };
  const auto fits = [](const std::string& pattern, const std::string& text) {
    const std::size_t star = pattern.find('*');
    return text.starts_with(pattern.substr(0, star)) && text.ends_with(pattern.substr(star + 1));
  };
  constexpr char systemText[] = "No such file or directory";
  Loc::Loader loader;
  loader.append(new Loc::CommonCoreModule);
  for (const auto& row : rows) {
    std::string error;
    ASSERT_TRUE(loader.load(row.language, &error)) << error;
    const std::string document = textOf([] {
      MLDoc doc;
      MLDoc::Token token;
      doc.load("settings.xml", "<a>\n  < b>", 10);
      while (doc.step(token)) {
      }
    });
    const std::string file = textOf([] { UTF8File(true).open("/none/file", UTF8File::ModeRead); });
    EXPECT_TRUE(fits(row.document, document)) << document;
    EXPECT_TRUE(fits(std::string(row.file) + systemText, file)) << file;
  }
}

}  // namespace

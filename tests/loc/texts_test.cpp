// Whole failures in every language, from their cause to the text that a person reads.
#include <gtest/gtest.h>

#include "fileproc.h"
#include "loc_loader.h"
#include "loc_module.h"
#include "mlproc.h"
#include "tttproc.h"

namespace {

std::string documentError() {
  MLDoc document;
  constexpr char text[] = "<a>\n  < b>";
  document.load("settings.xml", text, sizeof text - 1);
  std::string out;
  try {
    MLDoc::Token token;
    while (document.step(token)) {
    }
  } catch (const TTT& error) {
    error.makeMulti(out);
  }
  return out;
}

std::string fileError() {
  std::string out;
  try {
    UTF8File(true).open("/nonexistent/file", UTF8File::ModeRead);
  } catch (const TTT& error) {
    error.makeMulti(out);
  }
  return out;
}

TEST(Texts, ReadAsOneMessage) {
  const struct {
    const char *language, *document, *file;
  } rows[] = {
      {"eng",
       "The document contains an error.\n"
       "A tag has no element name. The name comes right after \"<\" or \"</\"; write the character "
       "\"<\" itself as \"&lt;\".\n"
       "File: settings.xml\n"
       "Line 2, column 5",
       "The file could not be opened.\n"
       "File: /nonexistent/file\n"
       "System message: No such file or directory"},
      {"deu",
       "Das Dokument enthält einen Fehler.\n"
       "In einem Tag fehlt der Elementname. Er steht unmittelbar nach „<“ oder „</“; das Zeichen "
       "„<“ selbst wird als „&lt;“ geschrieben.\n"
       "Datei: settings.xml\n"
       "Zeile 2, Spalte 5",
       "Die Datei konnte nicht geöffnet werden.\n"
       "Datei: /nonexistent/file\n"
       "Systemmeldung: No such file or directory"},
      {"fra",
       "Le document contient une erreur.\n"
       "Une balise n’a pas de nom d’élément. Le nom suit immédiatement «\u00A0<\u00A0» ou "
       "«\u00A0</\u00A0»\u202F; le caractère «\u00A0<\u00A0» lui-même s’écrit "
       "«\u00A0&lt;\u00A0».\n"
       "Fichier\u00A0: settings.xml\n"
       "Ligne 2, colonne 5",
       "Impossible d’ouvrir le fichier.\n"
       "Fichier\u00A0: /nonexistent/file\n"
       "Message du système\u00A0: No such file or directory"},
      {"spa",
       "El documento contiene un error.\n"
       "Una etiqueta no tiene nombre de elemento. El nombre va justo después de «<» o «</»; el "
       "propio carácter «<» se escribe «&lt;».\n"
       "Archivo: settings.xml\n"
       "Línea 2, columna 5",
       "No se pudo abrir el archivo.\n"
       "Archivo: /nonexistent/file\n"
       "Mensaje del sistema: No such file or directory"},
      {"rus",
       "Документ содержит ошибку.\n"
       "В теге нет имени элемента. Имя указывается сразу после «<» или «</»; сам символ «<» "
       "записывается как «&lt;».\n"
       "Файл: settings.xml\n"
       "Строка 2, столбец 5",
       "Не удалось открыть файл.\n"
       "Файл: /nonexistent/file\n"
       "Сообщение системы: No such file or directory"},
      {"ita",
       "Il documento contiene un errore.\n"
       "In un tag manca il nome dell’elemento. Il nome va scritto subito dopo «<» o «</»; il "
       "carattere «<» stesso si scrive «&lt;».\n"
       "Nome file: settings.xml\n"
       "Riga 2, colonna 5",
       "Impossibile aprire il file.\n"
       "Nome file: /nonexistent/file\n"
       "Messaggio di sistema: No such file or directory"},
      {"por",
       "O documento contém um erro.\n"
       "Uma tag não tem nome de elemento. O nome vem logo após “<” ou “</”; o próprio caractere "
       "“<” é escrito como “&lt;”.\n"
       "Arquivo: settings.xml\n"
       "Linha 2, coluna 5",
       "Não foi possível abrir o arquivo.\n"
       "Arquivo: /nonexistent/file\n"
       "Mensagem do sistema: No such file or directory"},
      {"pol",
       "Dokument zawiera błąd.\n"
       "W znaczniku brakuje nazwy elementu. Nazwę podaje się bezpośrednio po „<” lub „</”; sam "
       "znak „<” zapisuje się jako „&lt;”.\n"
       "Plik: settings.xml\n"
       "Wiersz 2, kolumna 5",
       "Nie udało się otworzyć pliku.\n"
       "Plik: /nonexistent/file\n"
       "Komunikat systemu: No such file or directory"},
      {"ukr",
       "Документ містить помилку.\n"
       "У тегу немає назви елемента. Назву вказують одразу після «<» або «</»; сам символ «<» "
       "записують як «&lt;».\n"
       "Файл: settings.xml\n"
       "Рядок 2, стовпець 5",
       "Не вдалося відкрити файл.\n"
       "Файл: /nonexistent/file\n"
       "Повідомлення системи: No such file or directory"},
      {"zho",
       "文档包含错误。\n"
       "标签中没有元素名称。名称应紧跟在“<”或“</”之后；字符“<”本身应写成“&lt;”。\n"
       "文件：settings.xml\n"
       "第 2 行，第 5 列",
       "无法打开文件。\n"
       "文件：/nonexistent/file\n"
       "系统消息：No such file or directory"},
  };
  Loc::Loader loader;
  loader.append(new Loc::CommonCoreModule);
  for (const auto& row : rows) {
    std::string error;
    ASSERT_TRUE(loader.load(row.language, &error)) << error;
    EXPECT_EQ(row.document, documentError());
    EXPECT_EQ(row.file, fileError());
  }
}

}  // namespace

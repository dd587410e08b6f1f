// Running text: sentences of words from a list, the frequent words first in the list and drawn
// more often, with commas, numbers, capitals and paragraphs as they come in real text.

#include "inputs.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace bench {
namespace {

struct Words {
  const char* name;
  std::vector<const char*> words;
  const char* space;
  const char* comma;
  const char* stop;
};

const std::array<Words, languageCount>& languages() {
  static const std::array<Words, languageCount> all = {{
      {"ASCII",
       {"the",      "of",         "and",       "to",           "a",        "in",        "is",
        "that",     "it",         "was",       "for",          "on",       "with",      "as",
        "be",       "at",         "by",        "from",         "which",    "this",      "have",
        "not",      "are",        "but",       "had",          "they",     "river",     "between",
        "stone",    "letter",     "morning",   "several",      "through",  "captain",   "winter",
        "question", "village",    "against",   "harbour",      "thousand", "weather",   "machine",
        "remember", "government", "southern",  "carefully",    "library",  "afternoon", "hundred",
        "mountain", "company",    "different", "engineer",     "Tuesday",  "paper",     "garden",
        "shipyard", "measure",    "distance",  "understanding"},
       " ",
       ", ",
       ". "},
      {"French",
       {"de",       "la",       "le",           "et",           "les",
        "des",      "en",       "un",           "du",           "une",
        "que",      "est",      "pour",         "qui",          "dans",
        "par",      "plus",     "pas",          "au",           "sur",
        "ne",       "se",       "ce",           "il",           "sont",
        "avec",     "à",        "été",          "où",           "même",
        "très",     "après",    "déjà",         "être",         "l’été",
        "qu’il",    "première", "rivière",      "matinée",      "capitaine",
        "hiver",    "forêt",    "lumière",      "fenêtre",      "côté",
        "élève",    "château",  "maître",       "gâteau",       "leçon",
        "français", "année",    "siècle",       "société",      "cœur",
        "œuvre",    "naïf",     "août",         "bibliothèque", "lettre",
        "village",  "montagne", "gouvernement", "différente",   "ingénieur",
        "mardi",    "papier",   "jardin",       "mesure",       "vers"},
       " ",
       ", ",
       ". "},
      {"Cyrillic",
       {"и",          "в",
        "не",         "на",
        "что",        "он",
        "с",          "как",
        "это",        "по",
        "но",         "они",
        "к",          "у",
        "же",         "из",
        "за",         "от",
        "она",        "так",
        "был",        "до",
        "было",       "ещё",
        "уже",        "когда",
        "для",        "только",
        "река",       "между",
        "камень",     "письмо",
        "утром",      "несколько",
        "через",      "капитан",
        "зима",       "вопрос",
        "деревня",    "против",
        "гавань",     "тысяча",
        "погода",     "машина",
        "помнить",    "правительство",
        "южный",      "осторожно",
        "библиотека", "полдень",
        "сотня",      "гора",
        "общество",   "различный",
        "инженер",    "вторник",
        "бумага",     "сад",
        "верфь",      "измерение",
        "расстояние", "понимание",
        "объём",      "съезд"},
       " ",
       ", ",
       ". "},
      {"Chinese",
       {"的",     "一",     "是",   "在",   "不",     "了",   "有",   "和",   "人",
        "这",     "中",     "大",   "为",   "上",     "个",   "国",   "我",   "以",
        "要",     "他",     "时",   "来",   "用",     "们",   "生",   "到",   "作",
        "地",     "于",     "出",   "河流", "之间",   "石头", "信件", "早晨", "几个",
        "通过",   "船长",   "冬天", "问题", "村庄",   "反对", "港口", "天气", "机器",
        "记得",   "政府",   "南方", "小心", "图书馆", "下午", "山脉", "公司", "不同",
        "工程师", "星期二", "纸张", "花园", "造船厂", "测量", "距离", "理解"},
       "",
       "，",
       "。"},
  }};
  return all;
}

// Small places in the list come often: the smaller of two draws, as in Zipf's rule roughly.
std::size_t frequentFirst(Random& random, std::size_t n) {
  return std::min(random.below(n), random.below(n));
}

// A capital for a word that begins with an ASCII letter; the other scripts are left as they are.
void appendWord(std::string& text, const char* word, bool capital) {
  text += word;
  char& first = text[text.size() - std::strlen(word)];
  if (capital && first >= 'a' && first <= 'z') first = static_cast<char>(first - 32);
}

bool continues(char c) { return (c & 0xC0) == 0x80; }

}  // namespace

Buffer<char> bufferOf(std::string_view bytes) {
  Buffer<char> buffer(bytes.size());
  std::memcpy(buffer.data(), bytes.data(), bytes.size());
  buffer.data()[bytes.size()] = 0;  // there is room behind the last element
  return buffer;
}

std::string sentences(Language language, std::size_t size, std::uint64_t seed) {
  const Words& words = languages()[language];
  Random random(seed + static_cast<std::uint64_t>(language));
  std::string text;
  while (text.size() < size) {
    const std::size_t length = 4 + random.below(14);
    for (std::size_t i = 0; i < length; ++i) {
      if (i > 0) text += random.below(9) == 0 ? words.comma : words.space;
      if (random.below(60) == 0) {
        text += std::to_string(random.below(2000));
      } else {
        appendWord(text, words.words[frequentFirst(random, words.words.size())], i == 0);
      }
    }
    text += words.stop;
    if (random.below(6) == 0) text += "\n";
  }
  while (continues(text[size])) --size;
  text.resize(size);
  return text;
}

Buffer<unsigned short> unitsOf(std::string_view bytes) {
  std::vector<unsigned short> units;
  for (std::size_t i = 0; i < bytes.size();) {
    const auto byte = [&](std::size_t n) {
      return static_cast<unsigned int>(static_cast<unsigned char>(bytes[i + n]));
    };
    unsigned int unit = byte(0);
    std::size_t length = 1;
    if (unit >= 0xE0) {
      unit = (unit & 15) << 12 | (byte(1) & 63) << 6 | (byte(2) & 63);
      length = 3;
    } else if (unit >= 0xC0) {
      unit = (unit & 31) << 6 | (byte(1) & 63);
      length = 2;
    }
    units.push_back(static_cast<unsigned short>(unit));
    i += length;
  }
  Buffer<unsigned short> buffer(units.size());
  std::copy(units.begin(), units.end(), buffer.begin());
  buffer.data()[units.size()] = 0;
  return buffer;
}

Text makeText(Language language, std::size_t size, const char* sizeName) {
  std::string text = sentences(language, size, 7);
  text.resize(size, '.');  // a character that would be cut in two gives way
  return {std::string(languages()[language].name) + ", " + sizeName, language == Ascii,
          bufferOf(text), unitsOf(text)};
}

const std::vector<Text>& longTexts() {
  static const std::vector<Text> texts = [] {
    std::vector<Text> made;
    made.reserve(languageCount);
    for (int i = 0; i < languageCount; ++i) {
      made.push_back(makeText(static_cast<Language>(i), megabyte, "1 MB"));
    }
    return made;
  }();
  return texts;
}

const std::vector<Text>& shortTexts() {
  static const std::vector<Text> texts = [] {
    std::vector<Text> made;
    made.reserve(languageCount);
    for (int i = 0; i < languageCount; ++i) {
      made.push_back(makeText(static_cast<Language>(i), 64, "64 bytes"));
    }
    return made;
  }();
  return texts;
}

}  // namespace bench

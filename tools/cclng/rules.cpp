// The order is that of the numbers.
#include "rules.h"

namespace cclng {

namespace {

constexpr const char* texts[] = {
    "All text of a document stands in messages.",
    "A document holds one element \"dictionary\", and this elements \"message\".",
    "A message holds plain text only.",
    "Every end tag closes an element.",
    "An end tag has the name of its start tag.",
    "Every element has an end tag.",
    "A document holds one dictionary only.",
    "A document holds a dictionary.",
    "Only the attributes of the format are used.",
    "No attribute stands twice in a tag.",
    "A dictionary has a name and a language, a message has a number.",
    "A message number is a whole number in the range that dictionaries can hold.",
    "A stamp is a hexadecimal number of up to 8 digits.",
    "Text is UTF-8 of at most three bytes per character.",
    "Text holds no 0 byte.",
    "Every message number stands once.",
    "Messages are numbered from 0 without gaps.",
    "A translation has no messages that the reference does not have.",
    "A dictionary holds at least one message.",
    "Every percent sign begins a placeholder.",
    "A translation has the placeholders of the reference in the same order.",
    "A translation has the name of the reference.",
    "A translation has the stamp of the reference.",
    "A file's name says the name and the language of the dictionary.",
    "A PO file translates every message of the reference.",
};
static_assert(sizeof texts / sizeof *texts == RulePoFile + 1);

}  // namespace

std::string rule_text(Rule rule) { return texts[rule]; }

}  // namespace cclng

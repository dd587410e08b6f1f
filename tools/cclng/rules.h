// What can be wrong with a document, by numbers that stay: reports name findings by them.
#pragma once

#include <string>

namespace cclng {

enum Rule : int {
  RuleTextOutside = 0,
  RuleElementName = 1,
  RuleMarkupInMessage = 2,
  RuleEndTagStray = 3,
  RuleEndTagName = 4,
  RuleEndTagMissing = 5,
  RuleSecondDictionary = 6,
  RuleNoDictionary = 7,
  RuleAttributeUnknown = 8,
  RuleAttributeTwice = 9,
  RuleAttributeMissing = 10,
  RuleNumberInvalid = 11,
  RuleStampInvalid = 12,
  RuleNotUtf8 = 13,
  RuleZeroByte = 14,
  RuleNumberTwice = 15,
  RuleMessageMissing = 16,
  RuleMessageUnknown = 17,
  RuleNoMessage = 18,
  RulePlaceholderUnknown = 19,
  RulePlaceholdersDiffer = 20,
  RuleNameDiffers = 21,
  RuleStampDiffers = 22,
  RuleFileName = 23,
  RulePoFile = 24,
};

// The rule as a sentence.
std::string rule_text(Rule rule);

}  // namespace cclng

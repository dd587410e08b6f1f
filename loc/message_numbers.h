/// @file
/// The message numbers of the library's own dictionary, slot `LocDictionaryCommonCore`.
///
/// Clients save and compare these numbers: a number never changes its meaning and is never used
/// again. Each line names the condition, then the arguments that the text's placeholders consume,
/// none where nothing is said. The texts stand in data/common_core.<language>.xml.
#pragma once

namespace cc {

enum MessageNumber : int {
  MsgElementNameBadByte = 0,      ///< markup: a byte that no name may hold ends an element name
  MsgAttributeNameBadByte = 1,    ///< markup: a byte that no name may hold inside an attribute name
  MsgAttributeNameBadStart = 2,   ///< markup: an attribute name begins with such a byte
  MsgCloseFailed = 3,             ///< file: closing failed
  MsgOpenFailed = 4,              ///< file: opening or creating failed
  MsgAttributeNoEqualsSign = 5,   ///< markup: something else than `=` after an attribute name
  MsgAttributeUnclosed = 6,       ///< markup: the tag ends before the closing quote of a value
  MsgElementUnclosed = 7,         ///< markup: the text ends inside the parent element
  MsgMakeDirectoryFailed = 8,     ///< file: creating a directory failed
  MsgRemoveFileFailed = 9,        ///< file: removing a file failed
  MsgRemoveDirectoryFailed = 10,  ///< file: removing a directory failed
  MsgTagUnclosed = 11,            ///< markup: the text ends inside a tag
  MsgWriteStopped = 12,           ///< file: writing stopped short without a system error
  MsgAttributeSecondEqualsSign = 13,  ///< markup: a second `=` in an attribute
  MsgElementNameEmpty = 14,           ///< markup: an element without a name
  MsgAttributeNameUnended = 15,       ///< markup: the tag ends inside an attribute name
  MsgAttributeControlByte = 16,       ///< markup, a warning: control bytes in an attribute value
  MsgSystemErrorNumber = 17,          ///< part of a failure: the system's error; its number (%d)
  MsgAttributeNoOpeningQuote = 18,    ///< markup: an attribute value without an opening quote
  MsgNotADouble = 19,                 ///< markup: not a complete number, or out of range
  MsgNotAnInteger = 20,               ///< markup: not a 64-bit decimal integer
  MsgPosition = 21,                   ///< part of a failure: the place; line (%d), column (%d)
  MsgElementNameLessThan = 22,        ///< markup: a `<` ends an element name
  MsgNoMemory = 23,                   ///< file, markup: not enough memory for the content
  MsgNotPlainText = 24,               ///< markup: the element has no plain text content
  MsgFileName = 25,                   ///< part of a failure: the file or document; its name (%s)
  MsgReadFailed = 26,                 ///< file: reading failed
  MsgSeekFailed = 27,                 ///< file: positioning, or taking the size, failed
  MsgSystemErrorText = 28,            ///< part of a failure: the system's error; its text (%s)
  MsgTooLarge = 29,                   ///< file, markup: the content is larger than allowed
  MsgElementNameTooLong = 30,         ///< markup: an element name of 511 bytes or more
  MsgAttributeNameTooLong = 31,       ///< markup: an attribute name of 512 bytes or more
  MsgFileEnded = 32,                  ///< file: the file ended before the requested bytes
  MsgAttributeUnended = 33,           ///< markup: the tag ends where an attribute is expected
  MsgBadEntity = 34,                  ///< markup: an unknown or cut-off entity
  MsgWriteFailed = 35,                ///< file: writing failed
  MsgCommentUnclosed = 36,            ///< markup: the text ends inside a comment
  MsgDocumentHeading = 37,            ///< heading of every error in a document that has a name
  MsgFlushFailed = 38,                ///< file: flushing or synchronising failed
};

/// How many numbers there are; the dictionary holds exactly these.
constexpr int messageCount = MsgFlushFailed + 1;

}  // namespace cc

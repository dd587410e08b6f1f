// The record of the library's own dictionary. Files made for other messages than these carry
// another stamp and are refused.
#include "common_core_loc.h"

#include "loc/lng_format.h"
#include "loc/message_numbers.h"

constinit IDLocLoader::Localization LCA_info = {cc::messageCount, cc::lng::Encoding,
                                                static_cast<int>(0xF196B6AA)};

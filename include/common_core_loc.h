/// @file
/// The record of the library's own dictionary.
#pragma once

#include "common_core_api.h"
#include "id_loc_loader.h"

/// Count, encoding and stamp that a `common_core` dictionary file must carry.
COMMON_CORE_API extern IDLocLoader::Localization LCA_info;

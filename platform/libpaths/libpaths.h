/// @file
/// The directories of the installation.
///
/// Failure style: nothing fails, and no result is null. Every path ends with "/", so that file
/// names are appended to it directly.
///
/// The defaults are fixed when this library is built. An environment variable overrides each, in
/// programs that do not run with raised privileges; a final "/" is added where it is missing. A
/// value that is empty or longer than 4,094 bytes, which no call of the system would take, counts
/// as unset. The environment is read at each call.
///
/// A returned text belongs to the calling thread and lasts until the thread calls the same function
/// again or ends. Any number of threads may call at the same time, as long as none changes the
/// environment meanwhile.
#pragma once

/// The configuration directory, where the dictionaries lie. Overridden by COMMON_CORE_ETC_DIR.
__attribute__((visibility("default"))) const char* agentEtcDir();

/// The writable data directory shared by all users, where pid files lie; UTF-8. Overridden by
/// COMMON_CORE_DATA_DIR.
__attribute__((visibility("default"))) const char* userDataCommonDirForWrite_utf8();

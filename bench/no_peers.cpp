// The build without other libraries: what the C library and plain loops offer is left to compare.

#include "peers.h"

namespace bench {

void addValidationPeers(Row&, const Text&) {}
void addCharacterPeers(Row&, const Text&) {}
void addEncodedSizePeers(Row&, const Text&) {}
void addDecodingPeers(Row&, const Text&, Buffer<unsigned short>&) {}
void addEncodingPeers(Row&, const Text&, Buffer<char>&) {}
void addCasePeers(Row&, const Text&, bool, Buffer<char>&) {}
void addCaselessSearchPeers(Row&, const Text&, std::string_view) {}
void addCaselessEqualityPeers(Row&, const Text&, const Text&) {}
void addMessagePeers(Row&, const MessageInput&, std::string&) {}
void addReportPeers(Row&, const MessageInput&, std::string&) {}
void addWalkPeers(Row&, const Document&) {}
void addParsePeers(Row&, const Document&, Buffer<char>&) {}
void addAttributePeers(Row&, const AttributeInput&, ValueKind, std::string&) {}
const char* libraryPeer() { return nullptr; }

}  // namespace bench

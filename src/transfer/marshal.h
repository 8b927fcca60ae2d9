// The packet of a marshalled object as read back, and the object it gives in another process.
#pragma once

#include <cstdint>
#include <vector>

#include <qvr/object.h>
#include <qvr/transfer.h>

namespace qvr {

struct PacketTable {
    String key, url, xml;
};

struct Packet {
    std::uint32_t process = 0;
    std::uint64_t token = 0;
    QVRObjectType type = qvrCatalog;
    String xml;
    std::vector<PacketTable> tables;
};

// Reads one packet from the stream's position; a bad one gives RPC_E_INVALID_DATA and a message.
HRESULT readPacket(IStream* stream, Packet* packet);

// The object a packet stands for in a process other than the one that wrote it: a copy of its
// text in a private document that is marked as coming from elsewhere, whose parts find their
// tables, those of the packet, in the private document's catalog.
HRESULT makeForeignObject(const Packet& packet, Ref<IUnknown>* object);

} // namespace qvr

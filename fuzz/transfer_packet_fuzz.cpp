// libFuzzer target: any bytes as the packet of a transferred object. The first byte chooses how
// they are taken: as they stand (the reader's own checks meet them), or as the body of a packet
// that is framed and sealed here, so that the fields, the texts and the object made from them in
// "another process" are explored past the checksum. An object that comes out is inserted into a
// catalog. A refusal must leave a message; nothing may crash or leak.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <qvr/qvr.h>

namespace {

using namespace qvr;

std::uint32_t fnv(const std::uint8_t* bytes, std::size_t size) {
    std::uint32_t hash = 2166136261u;
    for (std::size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 16777619u;
    return hash;
}

void put32(std::vector<std::uint8_t>& out, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

std::vector<std::uint8_t> sealed(const std::uint8_t* body, std::size_t size) {
    std::vector<std::uint8_t> packet = {'Q', 'V', 'R', 'M'};
    put32(packet, static_cast<std::uint32_t>(size + 4));
    packet.insert(packet.end(), body, body + size);
    put32(packet, fnv(body, size));
    return packet;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::vector<std::uint8_t> packet =
        data[0] & 1 ? sealed(data + 1, size - 1) : std::vector<std::uint8_t>(data + 1, data + size);
    Ref<IStream> stream;
    if (CreateStreamOnHGlobal(&stream) != S_OK) std::abort();
    if (!packet.empty())
        stream->Write(packet.data(), static_cast<std::uint32_t>(packet.size()), nullptr);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    Ref<IUnknown> unknown;
    const HRESULT hr = CoUnmarshalInterface(stream, IQVRCatalogObject::iid, &unknown);
    ErrorInfo info;
    if (FAILED(hr)) {
        // Every refusal is told.
        if (unknown || !GetErrorInfo(&info) || info.description.isEmpty()) std::abort();
        return 0;
    }
    Ref<IQVRCatalogObject> object = query<IQVRCatalogObject>(unknown);
    if (!object) std::abort();
    Ref<IQVRCatalog> catalog;
    VARIANT_BOOL done = VARIANT_FALSE;
    if (CreateCatalog(&catalog) != S_OK || catalog->create("", "Fuzz", "en", &done) != S_OK)
        std::abort();
    Ref<IQVRCatalogChapter> chapter;
    catalog->createChapter("Into", &chapter);
    catalog->appendChild(chapter, nullptr);
    Ref<IQVRCatalogObject> inserted;
    chapter->appendChild(object, &inserted);
    catalog->appendChild(object, &inserted);
    String xml;
    catalog->get_xml(&xml);
    return 0;
}

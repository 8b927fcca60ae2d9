// Marshalling without a remoting layer: a packet that carries the object by its text, so that it
// can cross a file or a pipe, together with a token of the process's handle table, so that the
// process that wrote it gets the object itself back.
//
// Packet layout, all numbers little endian:
//   "QVRM", u32 byte count of what follows,
//   u32 version, u32 process id, u64 token, i32 object type,
//   text object XML, u32 table count, per table: text key, text URL, text XML,
//   u32 FNV-1a checksum of everything from the version on.
// A text is a u32 byte count and that many bytes of UTF-8.
#include <unistd.h>

#include <cstring>
#include <mutex>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <qvr/catalog.h>
#include <qvr/dom.h>
#include <qvr/table.h>

#include "core/object_types.h"
#include "platform/com/error_report.h"
#include "platform/com/failure.h"
#include "transfer/marshal.h"

namespace qvr {
namespace {

constexpr char magic[4] = {'Q', 'V', 'R', 'M'};
constexpr std::uint32_t packetVersion = 1;
// A packet larger than this is taken for damaged rather than read into memory.
constexpr std::uint32_t largestPacket = 1u << 30;

const ErrorSource marshalSource{"QVRCatalog.Transfer", IUnknown::iid};

HRESULT invalidPacket(std::string_view why) {
    return reportError(marshalSource, String("The transferred object cannot be read: ") + why,
                       RPC_E_INVALID_DATA);
}

// --- The handle table: the objects of this process that packets stand for -------------------

struct HandleTable {
    std::mutex lock;
    std::unordered_map<std::uint64_t, Ref<IUnknown>> objects;
    std::mt19937_64 tokens{std::random_device{}()};
};

HandleTable& handles() {
    static auto* table = new HandleTable; // lives as long as the process, like its packets
    return *table;
}

std::uint64_t enterHandle(IUnknown* object) {
    HandleTable& table = handles();
    std::lock_guard<std::mutex> hold(table.lock);
    std::uint64_t token;
    do token = table.tokens();
    while (token == 0 || table.objects.count(token));
    table.objects.emplace(token, Ref<IUnknown>(object));
    return token;
}

// Takes the object out of the table: a normal packet is good for one unmarshalling.
Ref<IUnknown> takeHandle(std::uint64_t token) {
    HandleTable& table = handles();
    std::lock_guard<std::mutex> hold(table.lock);
    const auto found = table.objects.find(token);
    if (found == table.objects.end()) return nullptr;
    Ref<IUnknown> object = std::move(found->second);
    table.objects.erase(found);
    return object;
}

std::uint32_t checksum(const unsigned char* bytes, std::size_t size) {
    std::uint32_t hash = 2166136261u;
    for (std::size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 16777619u;
    return hash;
}

// --- Writing --------------------------------------------------------------------------------

class PacketWriter {
public:
    void number(std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            bytes_.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }
    void text(const String& value) {
        number(value.byteLength(), 4);
        bytes_.insert(bytes_.end(), value.view().begin(), value.view().end());
    }
    const std::vector<unsigned char>& bytes() const { return bytes_; }

private:
    std::vector<unsigned char> bytes_;
};

// The open tables of the parts at and below `element`, found in the catalog's cache by the key
// that each part's id gives.
HRESULT writeTables(PacketWriter& out, IQVRCatalogObject* object, IXMLDOMElement* element) {
    Ref<IQVRCatalogObject> catalogObject;
    Ref<IQVRCatalog> catalog;
    Ref<IQVRCatalogObjectList> tables;
    std::int32_t count = 0;
    if (object->get_catalog(&catalogObject) != S_OK ||
        !(catalog = query<IQVRCatalog>(catalogObject)) || catalog->get_tables(&tables) != S_OK ||
        tables->get_count(&count) != S_OK) {
        out.number(0, 4);
        return S_OK;
    }
    struct Entry {
        String key, url, xml;
    };
    std::vector<Entry> entries;
    for (std::int32_t i = 1; i <= count; ++i) {
        Ref<IQVRCatalogObject> item;
        Ref<IQVRCatalogTable> table;
        String key;
        if (tables->get_item(Variant(i), &item) != S_OK ||
            !(table = query<IQVRCatalogTable>(item)) || table->get_key(&key) != S_OK ||
            key.byteLength() < 2)
            continue;
        const String partId(key.view().substr(0, key.byteLength() - 1));
        const String select = String("descendant-or-self::Part[@id = '") + partId.view() + "']";
        Ref<IXMLDOMNode> part;
        if (partId.view().find('\'') != std::string_view::npos ||
            element->selectSingleNode(select, &part) != S_OK)
            continue;
        Entry entry{key, String(""), String()};
        Variant url;
        if (table->get_url(&url) == S_OK && !url.str().isNull()) entry.url = url.str();
        HRESULT hr = table->get_xml(&entry.xml);
        if (FAILED(hr)) return hr;
        entries.push_back(std::move(entry));
    }
    out.number(entries.size(), 4);
    for (const Entry& entry : entries) {
        out.text(entry.key);
        out.text(entry.url);
        out.text(entry.xml);
    }
    return S_OK;
}

HRESULT objectText(IQVRCatalogObject* object, QVRObjectType type, Ref<IXMLDOMElement>* element,
                   String* xml) {
    HRESULT hr;
    if (type == qvrCatalog || type == qvrTable) {
        // A root's text is its whole document.
        if (Ref<IQVRCatalog> catalog = query<IQVRCatalog>(object))
            hr = catalog->get_xml(xml);
        else if (Ref<IQVRCatalogTable> table = query<IQVRCatalogTable>(object))
            hr = table->get_xml(xml);
        else
            return E_NOINTERFACE;
        if (FAILED(hr)) return hr;
        return object->get_domNode(element);
    }
    if ((hr = object->get_domNode(element)) != S_OK) return FAILED(hr) ? hr : E_FAIL;
    return (*element)->get_xml(xml);
}

// --- Reading --------------------------------------------------------------------------------

class PacketReader {
public:
    explicit PacketReader(const std::vector<unsigned char>& bytes) : bytes_(bytes) {}
    bool number(std::uint64_t* value, int bytes) {
        if (bytes_.size() - at_ < static_cast<std::size_t>(bytes)) return false;
        *value = 0;
        for (int i = 0; i < bytes; ++i) *value |= std::uint64_t(bytes_[at_++]) << (8 * i);
        return true;
    }
    bool text(String* value) {
        std::uint64_t size;
        if (!number(&size, 4) || bytes_.size() - at_ < size) return false;
        *value = String(reinterpret_cast<const char*>(bytes_.data() + at_), size);
        at_ += size;
        return true;
    }
    bool atEnd() const { return at_ == bytes_.size(); }

private:
    const std::vector<unsigned char>& bytes_;
    std::size_t at_ = 0;
};

HRESULT readExactly(IStream* stream, void* buffer, std::uint32_t size) {
    std::uint32_t read = 0;
    HRESULT hr = stream->Read(buffer, size, &read);
    if (FAILED(hr)) return hr;
    return read == size ? S_OK : invalidPacket("it is cut short");
}

} // namespace

HRESULT CoMarshalInterface(IStream* stream, const IID&, IUnknown* unknown, std::uint32_t,
                           std::uint32_t) {
    return guarded([&] {
        if (!stream || !unknown) return E_INVALIDARG;
        Ref<IQVRCatalogObject> object = query<IQVRCatalogObject>(unknown);
        if (!object) return E_NOINTERFACE;
        QVRObjectType type;
        HRESULT hr = object->get_objectType(&type);
        if (FAILED(hr)) return hr;
        Ref<IXMLDOMElement> element;
        String xml;
        if ((hr = objectText(object, type, &element, &xml)) != S_OK)
            return FAILED(hr) ? hr : E_FAIL;
        PacketWriter body;
        body.number(packetVersion, 4);
        body.number(static_cast<std::uint32_t>(::getpid()), 4);
        const std::uint64_t token = enterHandle(object.get());
        body.number(token, 8);
        body.number(static_cast<std::uint32_t>(type), 4);
        body.text(xml);
        if (type == qvrPart || type == qvrChapter) {
            if (FAILED(hr = writeTables(body, object, element))) {
                takeHandle(token);
                return hr;
            }
        } else {
            body.number(0, 4);
        }
        PacketWriter head;
        const auto& bytes = body.bytes();
        head.number(bytes.size() + 4, 4);
        const std::uint32_t sum = checksum(bytes.data(), bytes.size());
        PacketWriter tail;
        tail.number(sum, 4);
        if ((hr = stream->Write(magic, 4, nullptr)) != S_OK ||
            (hr = stream->Write(head.bytes().data(), 4, nullptr)) != S_OK ||
            (hr = stream->Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr)) !=
                S_OK ||
            (hr = stream->Write(tail.bytes().data(), 4, nullptr)) != S_OK) {
            takeHandle(token);
            return FAILED(hr) ? hr : STG_E_WRITEFAULT;
        }
        return S_OK;
    });
}

HRESULT readPacket(IStream* stream, Packet* packet) {
    if (!stream) return E_INVALIDARG;
    char head[4];
    HRESULT hr = readExactly(stream, head, 4);
    if (hr != S_OK) return hr;
    if (std::memcmp(head, magic, 4) != 0) return invalidPacket("it is no packet of this library");
    unsigned char sizeBytes[4];
    if ((hr = readExactly(stream, sizeBytes, 4)) != S_OK) return hr;
    const std::uint32_t size =
        sizeBytes[0] | sizeBytes[1] << 8 | sizeBytes[2] << 16 | std::uint32_t(sizeBytes[3]) << 24;
    if (size < 4 || size > largestPacket) return invalidPacket("its length is wrong");
    STATSTG stat;
    std::uint64_t position = 0;
    if (stream->Stat(&stat, 0) == S_OK && stream->Seek(0, STREAM_SEEK_CUR, &position) == S_OK &&
        stat.cbSize - position < size)
        return invalidPacket("it is cut short");
    std::vector<unsigned char> bytes(size - 4);
    unsigned char sumBytes[4];
    if ((hr = readExactly(stream, bytes.data(), size - 4)) != S_OK ||
        (hr = readExactly(stream, sumBytes, 4)) != S_OK)
        return hr;
    const std::uint32_t sum =
        sumBytes[0] | sumBytes[1] << 8 | sumBytes[2] << 16 | std::uint32_t(sumBytes[3]) << 24;
    if (sum != checksum(bytes.data(), bytes.size())) return invalidPacket("it is damaged");
    PacketReader in(bytes);
    std::uint64_t version, process, token, type, count;
    if (!in.number(&version, 4) || !in.number(&process, 4) || !in.number(&token, 8) ||
        !in.number(&type, 4) || !in.text(&packet->xml) || !in.number(&count, 4))
        return invalidPacket("it is cut short");
    if (version != packetVersion) return invalidPacket("it is of another version");
    for (std::uint64_t i = 0; i < count; ++i) {
        PacketTable table;
        if (!in.text(&table.key) || !in.text(&table.url) || !in.text(&table.xml))
            return invalidPacket("it is cut short");
        packet->tables.push_back(std::move(table));
    }
    if (!in.atEnd()) return invalidPacket("it is damaged");
    if (type > static_cast<std::uint64_t>(qvrRecipe))
        return invalidPacket("it names an unknown kind of object");
    packet->process = static_cast<std::uint32_t>(process);
    packet->token = token;
    packet->type = static_cast<QVRObjectType>(type);
    return S_OK;
}

HRESULT CoUnmarshalInterface(IStream* stream, const IID& interfaceId, Ref<IUnknown>* object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    return guarded([&] {
        Packet packet;
        HRESULT hr = readPacket(stream, &packet);
        if (hr != S_OK) return hr;
        Ref<IUnknown> found;
        if (packet.process == static_cast<std::uint32_t>(::getpid())) {
            if (!(found = takeHandle(packet.token)))
                return reportError(marshalSource,
                                   String("The transferred object is no longer there"),
                                   CO_E_OBJNOTCONNECTED);
        } else if ((hr = makeForeignObject(packet, &found)) != S_OK) {
            return hr;
        }
        // The object answers the interface asked for, as an unmarshalled proxy would.
        if (!(interfaceId == IUnknown::iid || interfaceId == IQVRCatalogObject::iid ||
              query<IQVRCatalogObject>(found)))
            return E_NOINTERFACE;
        *object = std::move(found);
        return S_OK;
    });
}

HRESULT CoReleaseMarshalData(IStream* stream) {
    return guarded([&] {
        Packet packet;
        HRESULT hr = readPacket(stream, &packet);
        if (hr != S_OK) return hr;
        if (packet.process == static_cast<std::uint32_t>(::getpid())) takeHandle(packet.token);
        return S_OK;
    });
}

} // namespace qvr

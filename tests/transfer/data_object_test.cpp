// Objects handed over as data objects: their formats, the packets of their proxies, and the copy
// of a part that arrives in a catalog of another process.
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <vector>

#include <qvr/qvr.h>

#include "common/catalog_fixture.h"
#include "common/catalog_in_folder.h"

namespace qvr::testing {
namespace {

using Bytes = std::vector<unsigned char>;

FORMATETC formatOf(CLIPFORMAT format, std::uint32_t tymed = TYMED_ISTREAM) {
    FORMATETC f;
    f.cfFormat = format;
    f.tymed = tymed;
    return f;
}

Bytes bytesOf(IStream* stream) {
    STATSTG stat;
    stream->Stat(&stat, 0);
    Bytes bytes(stat.cbSize);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    if (!bytes.empty())
        stream->Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
    return bytes;
}

Ref<IStream> streamOf(const Bytes& bytes) {
    Ref<IStream> stream;
    CreateStreamOnHGlobal(&stream);
    if (!bytes.empty())
        stream->Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    return stream;
}

// The rendering of `format` through GetData on a stream, read from its start.
Bytes getData(IDataObject* data, CLIPFORMAT format) {
    FORMATETC f = formatOf(format);
    STGMEDIUM medium;
    EXPECT_EQ(data->GetData(&f, &medium), S_OK) << format;
    Bytes bytes;
    if (medium.tymed == TYMED_ISTREAM) {
        std::uint64_t position = 1;
        medium.pstm->Seek(0, STREAM_SEEK_CUR, &position);
        EXPECT_EQ(position, 0u);
        bytes = bytesOf(medium.pstm);
    }
    ReleaseStgMedium(&medium);
    return bytes;
}

// The object a packet stands for in this process.
HRESULT unmarshal(const Bytes& packet, Ref<IQVRCatalogObject>* object) {
    Ref<IUnknown> unknown;
    const HRESULT hr = CoUnmarshalInterface(streamOf(packet), IQVRCatalogObject::iid, &unknown);
    *object = query<IQVRCatalogObject>(unknown);
    return hr;
}

// The object's text as UTF-16, cut to as many bytes as it has characters.
Bytes halfText(IQVRCatalogObject* object) {
    String xml;
    elementOf(object)->get_xml(&xml);
    const std::u16string text = toUtf16(xml.view());
    Bytes bytes;
    for (char16_t c : text)
        bytes.insert(bytes.end(),
                     {static_cast<unsigned char>(c), static_cast<unsigned char>(c >> 8)});
    bytes.resize(text.size());
    return bytes;
}

std::uint32_t fnv(const unsigned char* bytes, std::size_t size) {
    std::uint32_t hash = 2166136261u;
    for (std::size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 16777619u;
    return hash;
}

// Changes the 32-bit field at `offset` of a packet and seals it again with a good checksum.
Bytes withField(Bytes packet, std::size_t offset, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) packet[offset + i] = static_cast<unsigned char>(value >> (8 * i));
    const std::uint32_t sum = fnv(packet.data() + 8, packet.size() - 12);
    for (int i = 0; i < 4; ++i)
        packet[packet.size() - 4 + i] = static_cast<unsigned char>(sum >> (8 * i));
    return packet;
}
constexpr std::size_t processField = 12, typeField = 24;

class Transfer : public CatalogInFolder {
protected:
    const CLIPFORMAT nodeType = RegisterClipboardFormat("CF_QVRNODETYPE");
    const CLIPFORMAT xml = RegisterClipboardFormat("CF_QVRXML");
    const CLIPFORMAT localProxy = RegisterClipboardFormat("CF_QVRLOCALPROXY");
    const CLIPFORMAT remoteProxy = RegisterClipboardFormat("CF_QVRREMOTEPROXY");
    const CLIPFORMAT localObject = RegisterClipboardFormat("CF_QVRLOCALOBJECT");
    const CLIPFORMAT objectBase = RegisterClipboardFormat("CF_QVROBJECTBASE");

    Ref<IDataObject> dataOf(IQVRCatalogObject* object) {
        Ref<IDataObject> data;
        EXPECT_EQ(object->getDataObject(&data), S_OK);
        return data;
    }
    // The part with its table attached and open.
    Ref<IQVRCatalogTable> partWithTable() {
        EXPECT_EQ(part->attachTable(writeTable("m8.xml")), S_OK);
        return openTable();
    }
};

TEST_F(Transfer, EveryFormatReadsBackForChapterPartTableAndColumn) {
    EXPECT_EQ(RegisterClipboardFormat("cf_qvrnodetype"), nodeType);
    EXPECT_GE(nodeType, 0xC000);
    Ref<IQVRCatalogTable> table = partWithTable();
    Ref<IQVRCatalogObject> column = firstColumn(table);
    const std::pair<IQVRCatalogObject*, QVRObjectType> objects[] = {{chapter.get(), qvrChapter},
                                                                    {part.get(), qvrPart},
                                                                    {table.get(), qvrTable},
                                                                    {column.get(), qvrTableColumn}};
    for (auto [object, type] : objects) {
        SCOPED_TRACE(type);
        Ref<IDataObject> data = dataOf(object);
        EXPECT_EQ(getData(data, nodeType), (Bytes{static_cast<unsigned char>(type), 0, 0, 0}));
        const Bytes text = halfText(object);
        EXPECT_EQ(getData(data, xml), text);
        EXPECT_EQ(getData(data, CF_TEXT), text);
        // Unicode text is listed but only rendered in place; plain text the other way round.
        FORMATETC unicode = formatOf(CF_UNICODETEXT);
        STGMEDIUM medium;
        EXPECT_EQ(data->GetData(&unicode, &medium), DV_E_FORMATETC);
        Ref<IStream> here;
        CreateStreamOnHGlobal(&here);
        medium.tymed = TYMED_ISTREAM;
        medium.pstm = here.get();
        EXPECT_EQ(data->GetDataHere(&unicode, &medium), S_OK);
        EXPECT_EQ(bytesOf(here), text);
        GlobalMemory memory;
        STGMEDIUM global;
        global.tymed = TYMED_HGLOBAL;
        global.hGlobal = &memory;
        FORMATETC typeFormat = formatOf(nodeType, TYMED_HGLOBAL);
        EXPECT_EQ(data->GetDataHere(&typeFormat, &global), S_OK);
        EXPECT_EQ(memory.bytes.size(), 4u);
        // Both proxies give the object itself in this process.
        for (CLIPFORMAT proxy : {localProxy, remoteProxy}) {
            Ref<IQVRCatalogObject> back;
            EXPECT_EQ(unmarshal(getData(data, proxy), &back), S_OK) << lastError();
            EXPECT_EQ(back.get(), object);
        }
        Bytes raw(8);
        std::memcpy(raw.data(), static_cast<const void*>(object), 8);
        EXPECT_EQ(getData(data, localObject), raw);
        // The base format is offered and yields nothing.
        FORMATETC base = formatOf(objectBase);
        STGMEDIUM untouched;
        EXPECT_EQ(data->GetData(&base, &untouched), S_OK);
        EXPECT_EQ(untouched.tymed, static_cast<std::uint32_t>(TYMED_NULL));
        // Through the catalog's own road.
        Ref<IQVRCatalogObject> taken;
        EXPECT_EQ(catalog->objectFromDataObject(data, &taken), S_OK);
        EXPECT_EQ(taken.get(), object);
    }
}

TEST_F(Transfer, QueriesAndListingKeepTheirOrderAndQuirks) {
    Ref<IDataObject> data = dataOf(part);
    FORMATETC f = formatOf(nodeType);
    EXPECT_EQ(data->QueryGetData(nullptr), E_INVALIDARG);
    f.lindex = 0;
    f.tymed = TYMED_FILE;
    EXPECT_EQ(data->QueryGetData(&f), DV_E_LINDEX);
    f.lindex = -1;
    EXPECT_EQ(data->QueryGetData(&f), DV_E_TYMED);
    f.tymed = TYMED_HGLOBAL | TYMED_ISTREAM;
    f.dwAspect = DVASPECT_ICON;
    f.cfFormat = CF_UNICODETEXT;
    EXPECT_EQ(data->QueryGetData(&f), DV_E_FORMATETC);
    f.cfFormat = CF_TEXT;
    EXPECT_EQ(data->QueryGetData(&f), DV_E_DVASPECT);
    f.dwAspect = DVASPECT_CONTENT;
    EXPECT_EQ(data->QueryGetData(&f), S_OK);
    // Both media asked for: the stream comes.
    STGMEDIUM medium;
    EXPECT_EQ(data->GetData(&f, &medium), S_OK);
    EXPECT_EQ(medium.tymed, static_cast<std::uint32_t>(TYMED_ISTREAM));
    ReleaseStgMedium(&medium);
    EXPECT_EQ(data->GetData(nullptr, &medium), E_INVALIDARG);
    EXPECT_EQ(data->GetData(&f, nullptr), E_POINTER);
    EXPECT_EQ(data->SetData(&f, &medium, VARIANT_TRUE), E_NOTIMPL);
    EXPECT_EQ(data->GetCanonicalFormatEtc(&f, &f), E_NOTIMPL);

    // The listing: the six in the table's order, then 13 and not 1.
    Ref<IEnumFORMATETC> formats;
    ASSERT_EQ(data->EnumFormatEtc(DATADIR_GET, &formats), S_OK);
    FORMATETC listed[8];
    std::uint32_t count = 0;
    EXPECT_EQ(formats->Next(8, listed, &count), S_FALSE);
    std::vector<CLIPFORMAT> numbers;
    for (std::uint32_t i = 0; i < count; ++i) numbers.push_back(listed[i].cfFormat);
    EXPECT_EQ(numbers, (std::vector<CLIPFORMAT>{nodeType, localProxy, xml, remoteProxy, localObject,
                                                objectBase, CF_UNICODETEXT}));
    EXPECT_EQ(listed[0].tymed, static_cast<std::uint32_t>(TYMED_HGLOBAL | TYMED_ISTREAM));
    ASSERT_EQ(data->EnumFormatEtc(DATADIR_SET, &formats), S_OK);
    EXPECT_EQ(formats->Next(1, listed, &count), S_FALSE);

    // Advising: nothing to leave or list before the first.
    EXPECT_EQ(data->DUnadvise(1), OLE_E_NOCONNECTION);
    Ref<IEnumSTATDATA> advises;
    EXPECT_EQ(data->EnumDAdvise(&advises), E_FAIL);
}

TEST_F(Transfer, PacketsThatCannotBeReadFailWithAMessage) {
    Bytes packet = getData(dataOf(part), localProxy);
    ASSERT_GT(packet.size(), 40u);
    Ref<IQVRCatalogObject> object;
    const auto refused = [&](const Bytes& bytes) {
        const HRESULT hr = unmarshal(bytes, &object);
        return FAILED(hr) && !object ? lastError() : std::string("accepted");
    };
    EXPECT_EQ(refused({}), "The transferred object cannot be read: it is cut short");
    EXPECT_EQ(refused(Bytes(packet.begin(), packet.end() - 9)),
              "The transferred object cannot be read: it is cut short");
    Bytes damaged = packet;
    damaged[30] ^= 0x20;
    EXPECT_EQ(refused(damaged), "The transferred object cannot be read: it is damaged");
    EXPECT_EQ(refused(withField(packet, typeField, 99)),
              "The transferred object cannot be read: it names an unknown kind of object");
    // A known number whose text is of another kind, in a packet from elsewhere.
    EXPECT_EQ(refused(withField(withField(packet, typeField, qvrChapter), processField, 0)),
              "The transferred object cannot be read: it names an unknown kind of object");
    // The first unmarshalling takes the object; the packet then stands for nothing.
    EXPECT_EQ(unmarshal(packet, &object), S_OK);
    EXPECT_EQ(refused(packet), "The transferred object is no longer there");
}

// The data object of a part goes to another process through a pipe, as the packet of its proxy;
// there it is taken into a catalog, a copy with its table.
TEST_F(Transfer, PartOfAnotherProcessArrivesWithItsTable) {
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
        close(channel[0]);
        bool ok = part->attachTable(writeTable("m8.xml", "Sent")) == S_OK;
        Ref<IDataObject> data;
        ok = ok && part->getDataObject(&data) == S_OK;
        FORMATETC f = formatOf(RegisterClipboardFormat("CF_QVRLOCALPROXY"));
        STGMEDIUM medium;
        ok = ok && data->GetData(&f, &medium) == S_OK && medium.pstm;
        const Bytes packet = ok ? bytesOf(medium.pstm) : Bytes();
        ok = ok && ::write(channel[1], packet.data(), packet.size()) ==
                       static_cast<ssize_t>(packet.size());
        _exit(ok ? 0 : 1);
    }
    close(channel[1]);
    Bytes packet;
    unsigned char buffer[4096];
    for (ssize_t n; (n = ::read(channel[0], buffer, sizeof buffer)) > 0;)
        packet.insert(packet.end(), buffer, buffer + n);
    close(channel[0]);
    int status = 0;
    ASSERT_EQ(waitpid(writer, &status, 0), writer);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);

    // The receiving catalog: another one, with a chapter of its own.
    Ref<IQVRCatalog> receiver;
    ASSERT_EQ(CreateCatalog(&receiver), S_OK);
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(receiver->create(base(), "Received", "en", &done), S_OK);
    Ref<IQVRCatalogChapter> shelf = newChapter(receiver, "Shelf");
    ASSERT_EQ(receiver->appendChild(shelf, nullptr), S_OK);
    Listener heard(receiver);

    Ref<IQVRCatalogObject> foreign;
    ASSERT_EQ(unmarshal(packet, &foreign), S_OK) << lastError();
    EXPECT_EQ(nameOf(foreign), "M8");
    Ref<IQVRCatalogObject> inserted;
    ASSERT_EQ(shelf->appendChild(foreign, &inserted), S_OK) << lastError();
    // A copy in a new wrapper; what was passed stays over its own text.
    EXPECT_NE(inserted.get(), foreign.get());
    EXPECT_EQ(keyOf(inserted), keyOf(foreign));
    EXPECT_EQ(heard.take(), "inserted M8");
    Ref<IQVRCatalogObject> parent;
    inserted->get_parentNode(&parent);
    EXPECT_EQ(parent.get(), static_cast<IQVRCatalogObject*>(shelf.get()));

    // Its table came along and is open in the receiving catalog, under the part's key.
    Ref<IQVRCatalogObjectList> tables;
    receiver->get_tables(&tables);
    EXPECT_EQ(keysIn(tables), keyOf(inserted) + "T");
    Ref<IQVRCatalogTable> table;
    ASSERT_EQ(query<IQVRCatalogPart>(inserted)->getTable(0, &table), S_OK);
    EXPECT_EQ(descOf(table), "Sent");
    EXPECT_EQ(rowKeys(table), "A B");
}

// A single child handed over from elsewhere goes in as a copy; the object given goes on wrapping
// its own element, its links now in this catalog.
TEST_F(Transfer, SingleChildOfAnotherProcessGoesInAsACopy) {
    Ref<IQVRCatalogURL> url;
    Ref<IQVRCatalogLink> link;
    ASSERT_EQ(catalog->createURL("http://example.com/m8", "M8", "en", &url), S_OK);
    ASSERT_EQ(catalog->createLink(url, &link), S_OK);
    // The packet as another process would have written it; the link itself is let go here.
    const Bytes written = getData(dataOf(link), localProxy);
    EXPECT_EQ(CoReleaseMarshalData(streamOf(written)), S_OK);
    Ref<IQVRCatalogObject> foreign;
    ASSERT_EQ(unmarshal(withField(written, processField, 0), &foreign), S_OK) << lastError();
    EXPECT_NE(foreign.get(), static_cast<IQVRCatalogObject*>(link.get()));
    Listener heard(catalog);
    ASSERT_EQ(catalog->putref_link(foreign), S_OK) << lastError();
    EXPECT_EQ(heard.take(), "changed Fasteners");
    Ref<IQVRCatalogLink> placed;
    ASSERT_EQ(catalog->get_link(&placed), S_OK);
    EXPECT_NE(elementOf(placed).get(), elementOf(foreign).get());
    String text;
    elementOf(placed)->get_xml(&text);
    EXPECT_NE(text.str().find("http://example.com/m8"), std::string::npos);
    Ref<IQVRCatalogObject> linkedTo;
    foreign->get_catalog(&linkedTo);
    EXPECT_EQ(linkedTo.get(), static_cast<IQVRCatalogObject*>(catalog.get()));
}

TEST(ServerModule, ClassObjectsAndUnloading) {
    ASSERT_EQ(DllCanUnloadNow(), S_OK);
    Ref<IUnknown> unknown;
    EXPECT_EQ(DllGetClassObject(IQVRCatalogPart::iid, IClassFactory::iid, &unknown),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_FALSE(unknown);
    ASSERT_EQ(DllGetClassObject(CLSID_QVRCatalog, IClassFactory::iid, &unknown), S_OK);
    Ref<IClassFactory> factory = query<IClassFactory>(unknown);
    Ref<IUnknown> again;
    DllGetClassObject(CLSID_QVRCatalog, IUnknown::iid, &again);
    EXPECT_EQ(again.get(), unknown.get());
    // The factories themselves keep nothing loaded.
    EXPECT_EQ(DllCanUnloadNow(), S_OK);

    Ref<IUnknown> made;
    EXPECT_EQ(factory->CreateInstance(factory, IQVRCatalog::iid, &made), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(nullptr, IQVRCatalogPart::iid, &made), E_NOINTERFACE);
    ASSERT_EQ(factory->CreateInstance(nullptr, IQVRCatalog::iid, &made), S_OK);
    Ref<IQVRCatalog> catalog = query<IQVRCatalog>(made);
    ASSERT_TRUE(catalog);
    made = nullptr;
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
    VARIANT_BOOL done = VARIANT_FALSE;
    catalog->create("", "Unloading", "en", &done);
    Ref<IDataObject> data;
    catalog->getDataObject(&data);
    Ref<IEnumFORMATETC> formats;
    data->EnumFormatEtc(DATADIR_GET, &formats);
    catalog = nullptr;
    data = nullptr;
    // The enumerator alone still counts.
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
    formats = nullptr;
    EXPECT_EQ(DllCanUnloadNow(), S_OK);

    Ref<IUnknown> tableFactory;
    ASSERT_EQ(DllGetClassObject(CLSID_QVRCatalogTable, IClassFactory::iid, &tableFactory), S_OK);
    EXPECT_EQ(query<IClassFactory>(tableFactory)->LockServer(VARIANT_TRUE), S_OK);
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
    query<IClassFactory>(tableFactory)->LockServer(VARIANT_FALSE);
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

} // namespace
} // namespace qvr::testing

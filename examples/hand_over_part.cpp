// Two programs hand a part over through a file:
//   hand_over_part send FILE      makes a catalog with the part "M8" and writes its packet
//   hand_over_part receive FILE   takes the part into a catalog of its own and prints it
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

#include <qvr/qvr.h>

using namespace qvr;

namespace {

bool worked(HRESULT hr, const char* what) {
    if (hr == S_OK) return true;
    ErrorInfo info;
    std::printf("%s failed: %s\n", what, GetErrorInfo(&info) ? info.description.c_str() : "");
    return false;
}

Ref<IQVRCatalog> newCatalog(const char* name) {
    Ref<IQVRCatalog> catalog;
    VARIANT_BOOL done = VARIANT_FALSE;
    if (!worked(CreateCatalog(&catalog), "CreateCatalog") ||
        !worked(catalog->create("", name, "en", &done), "create"))
        return nullptr;
    return catalog;
}

int send(const char* file) {
    Ref<IQVRCatalog> catalog = newCatalog("Fasteners");
    Ref<IQVRCatalogChapter> chapter;
    Ref<IQVRCatalogPart> part;
    if (!catalog || !worked(catalog->createChapter("Bolts", &chapter), "createChapter") ||
        !worked(catalog->appendChild(chapter, nullptr), "appendChild") ||
        !worked(catalog->createPart("M8", &part), "createPart") ||
        !worked(chapter->appendChild(part, nullptr), "appendChild"))
        return 1;
    // docs-begin: offer
    Ref<IDataObject> data;
    part->getDataObject(&data);
    FORMATETC format; // content, all of it, in a stream
    format.cfFormat = RegisterClipboardFormat("CF_QVRLOCALPROXY");
    format.tymed = TYMED_ISTREAM;
    STGMEDIUM medium;
    if (data->GetData(&format, &medium) != S_OK || !medium.pstm) return 1;
    STATSTG stat;
    medium.pstm->Stat(&stat, 0);
    std::vector<char> packet(stat.cbSize);
    medium.pstm->Read(packet.data(), static_cast<std::uint32_t>(packet.size()), nullptr);
    ReleaseStgMedium(&medium);
    std::ofstream(file, std::ios::binary).write(packet.data(), packet.size());
    // docs-end: offer
    return 0;
}

int receive(const char* file) {
    Ref<IQVRCatalog> catalog = newCatalog("Received");
    Ref<IQVRCatalogChapter> chapter;
    if (!catalog || !worked(catalog->createChapter("Shelf", &chapter), "createChapter") ||
        !worked(catalog->appendChild(chapter, nullptr), "appendChild"))
        return 1;
    // docs-begin: take
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> packet{std::istreambuf_iterator<char>(in), {}};
    Ref<IStream> stream;
    CreateStreamOnHGlobal(&stream);
    stream->Write(packet.data(), static_cast<std::uint32_t>(packet.size()), nullptr);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    Ref<IUnknown> unmarshalled;
    if (!worked(CoUnmarshalInterface(stream, IQVRCatalogObject::iid, &unmarshalled), "unmarshal"))
        return 1;
    Ref<IQVRCatalogObject> inserted; // a new object over the copy in this catalog
    if (!worked(chapter->appendChild(query<IQVRCatalogObject>(unmarshalled), &inserted), "insert"))
        return 1;
    // docs-end: take
    Variant name;
    inserted->getValue("@name", &name);
    std::printf("received %s\n", name.str().c_str());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "send") == 0) return send(argv[2]);
    if (argc == 3 && std::strcmp(argv[1], "receive") == 0) return receive(argv[2]);
    std::printf("usage: hand_over_part send|receive FILE\n");
    return 2;
}

// The platform under the model: the DOM, streams, data objects and marshalling, the class
// objects, the module-wide functions, the enumerations and the statuses.
#include <cstring>
#include <string_view>

#include "api_docs.h"
#include "binding.h"

namespace qvrpy {

using namespace qvr;

namespace {

using NodeListWalk = IndexWalk<IXMLDOMNodeList, IXMLDOMNode, &IXMLDOMNodeList::get_length,
                               &IXMLDOMNodeList::get_item, 0>;

// Registers enumeration E under its name in the headers, its values also at module level.
template <class E>
void declareEnum(py::module_& m, const char* name) {
    py::enum_<E> e(m, name, py::arithmetic());
    for (const ApiValue& v : kApiValues)
        if (std::strcmp(v.group, name) == 0) e.value(v.name, static_cast<E>(v.value));
    e.export_values();
    py::implicitly_convertible<std::int64_t, E>();
}

void bindDom(py::module_& m) {
    bind<IXMLDOMNode>(m, QVR_GET(nodeName), QVR_GET(nodeType), QVR_GET(nodeValue),
                      QVR_GET(nodeTypedValue), QVR_PROP(text), QVR_GET(xml), QVR_GET(parentNode),
                      QVR_GET(firstChild), QVR_GET(lastChild), QVR_GET(nextSibling),
                      QVR_GET(previousSibling), QVR_GET(childNodes), QVR_DO(hasChildNodes),
                      QVR_GET(ownerDocument), QVR_DO(insertBefore, nullptr), QVR_DO(appendChild),
                      QVR_DO(removeChild), QVR_DO(replaceChild), QVR_DO(cloneNode),
                      QVR_DO(selectSingleNode), QVR_DO(selectNodes));
    {
        using Self = IXMLDOMElement;
        using TextForm = HRESULT (Self::*)(const String&, String*);
        bind<Self>(m, QVR_GET(tagName),
                   QVR_OP(b.method("getAttribute", static_cast<TextForm>(&Self::getAttribute))),
                   QVR_DO(setAttribute), QVR_DO(removeAttribute));
    }
    {
        using Self = IXMLDOMNodeList;
        auto b = bind<Self>(m, QVR_GET(length), QVR_AS(item, get_item));
        addSequence<NodeListWalk, Self>(b.cls());
    }
    bind<IXMLDOMParseError>(m, QVR_GET(errorCode), QVR_GET(url), QVR_GET(reason), QVR_GET(srcText),
                            QVR_GET(line), QVR_GET(linepos), QVR_GET(filepos));
    {
        using Self = IXMLDOMDocument;
        auto b = bind<Self>(m, QVR_REF(documentElement), QVR_DO(createElement),
                            QVR_DO(createTextNode), QVR_DO(createComment),
                            QVR_DO(createProcessingInstruction), QVR_DO(load), QVR_DO(loadXML),
                            QVR_DO(save), QVR_GET(url), QVR_GET(parseError), QVR_SET(async));
        addCreator(b, &CreateDOMDocument, "A new, empty document.");
    }
}

std::string readAll(IStream& stream) {
    std::string bytes, chunk(4096, '\0');
    for (;;) {
        std::uint32_t read = 0;
        check(stream.Read(chunk.data(), static_cast<std::uint32_t>(chunk.size()), &read), "Read");
        if (read == 0) return bytes;
        bytes.append(chunk, 0, read);
    }
}

FORMATETC formatOf(CLIPFORMAT format, std::uint32_t tymed) {
    FORMATETC f;
    f.cfFormat = format;
    f.tymed = tymed;
    return f;
}

// A stream's bytes, and a data object's renderings, as Python bytes.
void bindTransfer(py::module_& m) {
    using Stream = IStream;
    bind<Stream>(m)
        .cls()
        .def(py::init([] {
                 Ref<Stream> stream;
                 check(CreateStreamOnHGlobal(&stream), "CreateStreamOnHGlobal");
                 return stream;
             }),
             "A new empty stream in memory.")
        .def(
            "Read",
            [](Stream& self, std::uint32_t count) {
                std::string bytes(count, '\0');
                std::uint32_t read = 0;
                ClearErrorInfo();
                check(self.Read(bytes.data(), count, &read), "Read");
                bytes.resize(read);
                return py::bytes(bytes);
            },
            py::arg("count"))
        .def("readAll", [](Stream& self) { return py::bytes(readAll(self)); })
        .def(
            "Write",
            [](Stream& self, const py::bytes& data) {
                std::string_view bytes = data;
                std::uint32_t written = 0;
                ClearErrorInfo();
                check(self.Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &written),
                      "Write");
                return written;
            },
            py::arg("data"))
        .def(
            "Seek",
            [](Stream& self, std::int64_t move, STREAM_SEEK origin) {
                std::uint64_t position = 0;
                ClearErrorInfo();
                check(self.Seek(move, origin, &position), "Seek");
                return position;
            },
            py::arg("move"), py::arg("origin") = STREAM_SEEK_SET, docOf("IStream", "Seek"))
        .def("Stat", [](Stream& self) {
            STATSTG stat;
            ClearErrorInfo();
            check(self.Stat(&stat, 0), "Stat");
            return stat.cbSize;
        });

    using Data = IDataObject;
    bind<Data>(m)
        .cls()
        .def(
            "GetData",
            [](Data& self, CLIPFORMAT format, std::uint32_t tymed) {
                FORMATETC f = formatOf(format, tymed);
                STGMEDIUM medium;
                ClearErrorInfo();
                check(self.GetData(&f, &medium), "GetData");
                std::string bytes;
                if (medium.tymed == TYMED_HGLOBAL && medium.hGlobal)
                    bytes.assign(medium.hGlobal->bytes.begin(), medium.hGlobal->bytes.end());
                if (medium.tymed == TYMED_ISTREAM && medium.pstm) {
                    medium.pstm->Seek(0, STREAM_SEEK_SET, nullptr);
                    bytes = readAll(*medium.pstm);
                }
                ReleaseStgMedium(&medium);
                return py::bytes(bytes);
            },
            py::arg("format"), py::arg("tymed") = TYMED_HGLOBAL | TYMED_ISTREAM,
            docOf("IDataObject", "GetData"))
        .def(
            "GetDataHere",
            [](Data& self, CLIPFORMAT format, Stream* stream) {
                FORMATETC f = formatOf(format, TYMED_ISTREAM);
                STGMEDIUM medium;
                medium.tymed = TYMED_ISTREAM;
                medium.pstm = stream;
                ClearErrorInfo();
                check(self.GetDataHere(&f, &medium), "GetDataHere");
            },
            py::arg("format"), py::arg("stream"))
        .def(
            "QueryGetData",
            [](Data& self, CLIPFORMAT format, std::uint32_t tymed) {
                FORMATETC f = formatOf(format, tymed);
                ClearErrorInfo();
                HRESULT hr = self.QueryGetData(&f);
                return hr == S_OK;
            },
            py::arg("format"), py::arg("tymed") = TYMED_HGLOBAL | TYMED_ISTREAM)
        .def(
            "GetCanonicalFormatEtc",
            [](Data& self, CLIPFORMAT format, std::uint32_t tymed) {
                FORMATETC in = formatOf(format, tymed), out;
                ClearErrorInfo();
                check(self.GetCanonicalFormatEtc(&in, &out), "GetCanonicalFormatEtc");
                return std::make_tuple(out.cfFormat, out.tymed);
            },
            py::arg("format"), py::arg("tymed") = TYMED_HGLOBAL | TYMED_ISTREAM)
        .def(
            "SetData",
            [](Data& self, CLIPFORMAT format, const py::bytes& data) {
                std::string_view bytes = data;
                FORMATETC f = formatOf(format, TYMED_HGLOBAL);
                STGMEDIUM medium;
                medium.tymed = TYMED_HGLOBAL;
                medium.hGlobal = new GlobalMemory{{bytes.begin(), bytes.end()}};
                ClearErrorInfo();
                HRESULT hr = self.SetData(&f, &medium, VARIANT_TRUE);
                if (FAILED(hr)) ReleaseStgMedium(&medium); // not taken over
                check(hr, "SetData");
            },
            py::arg("format"), py::arg("data"))
        .def(
            "EnumFormatEtc",
            [](Data& self, std::uint32_t direction) {
                Ref<IEnumFORMATETC> formats;
                ClearErrorInfo();
                check(self.EnumFormatEtc(direction, &formats), "EnumFormatEtc");
                std::vector<std::tuple<CLIPFORMAT, std::uint32_t>> list;
                FORMATETC f;
                std::uint32_t fetched = 0;
                while (formats && formats->Next(1, &f, &fetched) == S_OK && fetched == 1)
                    list.emplace_back(f.cfFormat, f.tymed);
                return list;
            },
            py::arg("direction") = DATADIR_GET, "The formats offered, as (format, tymed) pairs.");

    m.attr("CF_TEXT") = CF_TEXT;
    m.attr("CF_UNICODETEXT") = CF_UNICODETEXT;
    m.def(
        "RegisterClipboardFormat",
        [](const std::string& name) { return RegisterClipboardFormat(name.c_str()); },
        py::arg("name"),
        "The number of a named format, the same for the life of the process; 0 for an empty name.");
    m.def(
        "CoMarshalInterface",
        [](IUnknown* object) {
            Ref<Stream> stream;
            check(CreateStreamOnHGlobal(&stream), "CreateStreamOnHGlobal");
            ClearErrorInfo();
            check(CoMarshalInterface(stream, IUnknown::iid, object, MSHCTX_LOCAL, MSHLFLAGS_NORMAL),
                  "CoMarshalInterface");
            stream->Seek(0, STREAM_SEEK_SET, nullptr);
            return py::bytes(readAll(*stream));
        },
        py::arg("object"),
        "A packet of bytes that CoUnmarshalInterface takes in, in this process or another.");
    auto packetStream = [](const py::bytes& packet) {
        std::string_view bytes = packet;
        Ref<Stream> stream;
        check(CreateStreamOnHGlobal(&stream), "CreateStreamOnHGlobal");
        stream->Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
        stream->Seek(0, STREAM_SEEK_SET, nullptr);
        return stream;
    };
    m.def(
        "CoUnmarshalInterface",
        [packetStream](const py::bytes& packet) {
            Ref<Stream> stream = packetStream(packet);
            Ref<IUnknown> object;
            ClearErrorInfo();
            check(CoUnmarshalInterface(stream, IUnknown::iid, &object), "CoUnmarshalInterface");
            return object;
        },
        py::arg("packet"), "The object of a packet: itself in its process, else a copy.");
    m.def(
        "CoReleaseMarshalData",
        [packetStream](const py::bytes& packet) {
            Ref<Stream> stream = packetStream(packet);
            ClearErrorInfo();
            check(CoReleaseMarshalData(stream), "CoReleaseMarshalData");
        },
        py::arg("packet"), "Lets the object of a packet go in the process that wrote it.");
}

void bindServer(py::module_& m) {
    using Factory = IClassFactory;
    bind<Factory>(m, QVR_DO(LockServer))
        .cls()
        .def(
            "CreateInstance",
            [](Factory& self, const std::string& interfaceId) {
                Ref<IUnknown> object;
                ClearErrorInfo();
                check(self.CreateInstance(nullptr, IID{interfaceId.c_str()}, &object),
                      "CreateInstance");
                return object;
            },
            py::arg("interfaceId") = "IUnknown", docOf("IClassFactory", "CreateInstance"));
    m.attr("CLSID_QVRCatalog") = CLSID_QVRCatalog.name;
    m.attr("CLSID_QVRCatalogTable") = CLSID_QVRCatalogTable.name;
    m.def(
        "DllGetClassObject",
        [](const std::string& classId) {
            Ref<IUnknown> object;
            ClearErrorInfo();
            check(DllGetClassObject(IID{classId.c_str()}, IClassFactory::iid, &object),
                  "DllGetClassObject");
            return query<IClassFactory>(object);
        },
        py::arg("classId"), "The class object of CLSID_QVRCatalog or CLSID_QVRCatalogTable.");
    m.def(
        "DllCanUnloadNow", [] { return DllCanUnloadNow() == S_OK; },
        "True when no object of the library lives and no lock is held.");
    m.def(
        "CanUnloadNow", [] { return CanUnloadNow() == S_OK; },
        "True when no object of the library is alive and no lock is held.");
    m.def(
        "LockServer", [](bool lock) { check(LockServer(lock), "LockServer"); }, py::arg("lock"),
        "Holds (True) or releases (False) the library as if an object were alive.");
    m.def(
        "SetUserLocale", [](LCID lcid) { SetUserLocale(lcid); }, py::arg("lcid"),
        "Sets the process user locale (1033 en-US, 2057 en-GB, 1031 de-DE, 1036 fr-FR, ...).");
    m.def("GetUserLocale", &GetUserLocale, "The process user locale (1033 unless set).");
}

} // namespace

void bindPlatformClasses(py::module_& m) {
    for (const ApiValue& v : kApiValues)
        if (std::strcmp(v.group, "HRESULT") == 0)
            m.attr(v.name) = static_cast<std::uint32_t>(static_cast<HRESULT>(v.value));
    declareEnum<QVRObjectType>(m, "QVRObjectType");
    declareEnum<QVREventId>(m, "QVREventId");
    declareEnum<QVRURLActuate>(m, "QVRURLActuate");
    declareEnum<QVRURLShow>(m, "QVRURLShow");
    declareEnum<QVRURLType>(m, "QVRURLType");
    declareEnum<QVROrderTargetType>(m, "QVROrderTargetType");
    declareEnum<QVRColumnDataType>(m, "QVRColumnDataType");
    declareEnum<QVRViewKey>(m, "QVRViewKey");
    declareEnum<QVRRefRole>(m, "QVRRefRole");
    declareEnum<DOMNodeType>(m, "DOMNodeType");
    declareEnum<STREAM_SEEK>(m, "STREAM_SEEK");
    declareEnum<TYMED>(m, "TYMED");
    declareEnum<DATADIR>(m, "DATADIR");
}

void bindPlatformOperations(py::module_& m) {
    bindDom(m);
    bindTransfer(m);
    bindServer(m);
}

} // namespace qvrpy

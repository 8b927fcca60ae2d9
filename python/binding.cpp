#include "binding.h"

#include <cstdio>
#include <cstring>
#include <deque>
#include <limits>
#include <set>
#include <utility>

#include "api_docs.h"

namespace qvrpy {

using namespace qvr;

namespace {

// Python objects the module keeps for its whole life. They are never released: the interpreter
// may already be gone when static destructors run.
py::handle errorType;
py::handle decimalType;
py::handle dateTimeType;
py::handle dateType;

// The first exception a sink raised during the operation under way; raised once it returns.
PyObject* pendingType = nullptr;
PyObject* pendingValue = nullptr;
PyObject* pendingTrace = nullptr;

template <class I>
const void* as(IUnknown* object, const std::type_info*& type) {
    I* found = detail::interfaceCast<I>(object);
    if (found) type = &typeid(I);
    return found;
}
using Resolver = const void* (*)(IUnknown*, const std::type_info*&);

// The interface of each kind of object, by the number get_objectType gives.
const std::pair<QVRObjectType, Resolver> kObjectKinds[] = {
    {qvrCatalog, &as<IQVRCatalog>},
    {qvrChapter, &as<IQVRCatalogChapter>},
    {qvrPart, &as<IQVRCatalogPart>},
    {qvrImage, &as<IQVRCatalogImage>},
    {qvrLink, &as<IQVRCatalogLink>},
    {qvrClass, &as<IQVRCatalogClass>},
    {qvrClassifications, &as<IQVRCatalogClassifications>},
    {qvrOrderInfo, &as<IQVRCatalogOrderInfo>},
    {qvrAvailability, &as<IQVRCatalogAvailability>},
    {qvrCountryCode, &as<IQVRCatalogCountryCode>},
    {qvrOrderMethod, &as<IQVRCatalogOrderMethod>},
    {qvrOrderMethods, &as<IQVRCatalogOrderMethods>},
    {qvrOrderTarget, &as<IQVRCatalogOrderTarget>},
    {qvrPhone, &as<IQVRCatalogPhone>},
    {qvrEmail, &as<IQVRCatalogEmail>},
    {qvrFax, &as<IQVRCatalogFax>},
    {qvrTelephoneNumber, &as<IQVRCatalogTelephoneNumber>},
    {qvrStreet, &as<IQVRCatalogStreet>},
    {qvrPostalAddress, &as<IQVRCatalogPostalAddress>},
    {qvrAddress, &as<IQVRCatalogAddress>},
    {qvrSupplierLocation, &as<IQVRCatalogSupplierLocation>},
    {qvrSupplierID, &as<IQVRCatalogSupplierID>},
    {qvrSupplierIDs, &as<IQVRCatalogSupplierIDs>},
    {qvrECommerceCenterID, &as<IQVRCatalogECommerceCenterID>},
    {qvrECommerceCenterIDs, &as<IQVRCatalogECommerceCenterIDs>},
    {qvrSupplier, &as<IQVRCatalogSupplier>},
    {qvrExtrinsics, &as<IQVRCatalogExtrinsics>},
    {qvrExtrinsic, &as<IQVRCatalogExtrinsic>},
    {qvrDocument, &as<IQVRCatalogDocument>},
    {qvrDocuments, &as<IQVRCatalogDocuments>},
    {qvrURL, &as<IQVRCatalogURL>},
    {qvrTable, &as<IQVRCatalogTable>},
    {qvrImages, &as<IQVRCatalogImages>},
    {qvrReferencedFiles, &as<IQVRCatalogReferencedFiles>},
    {qvrTableColumn, &as<IQVRTableColumn>},
    {qvrRefColumn, &as<IQVRTableRefColumn>},
    {qvrConstColumn, &as<IQVRTableConstColumn>},
    {qvrCalculatedColumn, &as<IQVRTableCalculatedColumn>},
    {qvrUniqueColumn, &as<IQVRTableUniqueColumn>},
    {qvrView, &as<IQVRTableView>},
    {qvrConstView, &as<IQVRTableConstView>},
    {qvrDrawing, &as<IQVRTableDrawing>},
    {qvrCell, &as<IQVRTableCell>},
    {qvrRefCell, &as<IQVRTableRefCell>},
    {qvrInfoCell, &as<IQVRTableInfoCell>},
    {qvrReference, &as<IQVRCatalogReference>},
    {qvrRecipe, &as<IQVRTableRecipe>},
};

// The interfaces an object handed out as IUnknown may offer, most useful first.
const Resolver kUnknownKinds[] = {
    &as<IQVRCatalogObjectList>, &as<IEnumVARIANT>, &as<IXMLDOMNodeList>,
    &as<IXMLDOMParseError>,     &as<IStream>,      &as<IDataObject>,
    &as<IClassFactory>,
};

py::object decimal(const std::string& text) {
    return py::reinterpret_borrow<py::object>(decimalType)(text);
}

// A value of an integer or decimal type that has no accessor of its own, through its text.
py::object throughText(const Variant& value, bool integer) {
    Variant text;
    if (changeType(&text, value, LOCALE_INVARIANT, 0, VT_BSTR) != S_OK)
        throw py::value_error("a value of variant type " + std::to_string(value.vt()) +
                              " that has no Python form");
    if (integer) return py::int_(py::str(text.str().str()));
    return decimal(text.str().str());
}

} // namespace

void initBasics(py::module_& m) {
    errorType = PyErr_NewExceptionWithDoc(
        "qvrcatalog.Error",
        "A failed operation: `status` is the library's status (an unsigned 32-bit number, as the "
        "module's constants give it), `message` its description, `source` and `interface` the "
        "class and the interface that reported it.",
        PyExc_Exception, nullptr);
    if (!errorType) throw py::error_already_set();
    m.add_object("Error", errorType);
    decimalType = py::object(py::module_::import("decimal").attr("Decimal")).release();
    dateTimeType = py::object(py::module_::import("datetime").attr("datetime")).release();
    dateType = py::object(py::module_::import("datetime").attr("date")).release();
}

void raiseError(HRESULT hr, const char* operation) {
    ErrorInfo info;
    bool reported = GetErrorInfo(&info) && !info.description.isEmpty();
    char status[16];
    std::snprintf(status, sizeof status, "0x%08X", static_cast<std::uint32_t>(hr));
    std::string message = reported ? info.description.str()
                                   : std::string(operation) + " failed with status " + status;
    py::object error = py::reinterpret_borrow<py::object>(errorType)(message);
    error.attr("status") = static_cast<std::uint32_t>(hr);
    error.attr("message") = message;
    error.attr("source") = reported ? info.source : String();
    error.attr("interface") = reported ? info.interface : String();
    PyErr_SetObject(errorType.ptr(), error.ptr());
    throw py::error_already_set();
}

void check(HRESULT hr, const char* operation) {
    if (pendingType) {
        PyErr_Restore(std::exchange(pendingType, nullptr), std::exchange(pendingValue, nullptr),
                      std::exchange(pendingTrace, nullptr));
        ClearErrorInfo();
        throw py::error_already_set();
    }
    if (FAILED(hr)) raiseError(hr, operation);
}

void holdSinkError(py::error_already_set& error) {
    if (pendingType) {
        error.discard_as_unraisable("a second sink of the same operation");
        return;
    }
    error.restore();
    PyErr_Fetch(&pendingType, &pendingValue, &pendingTrace);
}

py::object fromVariant(const Variant& value) {
    switch (value.vt()) {
    case VT_EMPTY:
    case VT_NULL: return py::none();
    case VT_I2: return py::int_(value.i2());
    case VT_I4: return py::int_(value.i4());
    case VT_UI1: return py::int_(value.ui1());
    case VT_R4: return py::float_(value.r4());
    case VT_R8: return py::float_(value.r8());
    case VT_BOOL: return py::bool_(value.boolVal() != VARIANT_FALSE);
    case VT_BSTR: return py::cast(value.str());
    case VT_CY: return decimal(std::to_string(value.cy().int64)).attr("scaleb")(-4);
    case VT_DATE: {
        DateParts parts;
        if (!dateToParts(value.dateValue(), &parts))
            throw py::value_error("a date outside the years 100 to 9999");
        return py::reinterpret_borrow<py::object>(dateTimeType)(
            parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second,
            parts.millisecond * 1000);
    }
    case VT_DISPATCH:
    case VT_UNKNOWN: return py::cast(Ref<IUnknown>(value.object()));
    case VT_ERROR:
        if (value.isMissing()) return py::none();
        return py::int_(static_cast<std::uint32_t>(value.scode()));
    case VT_DECIMAL: return throughText(value, false);
    default: break;
    }
    if (value.isArray()) {
        py::list items;
        for (const Variant& item : value.items()) items.append(fromVariant(item));
        return items;
    }
    return throughText(value, true);
}

bool toVariant(py::handle value, Variant* out) {
    PyObject* o = value.ptr();
    if (value.is_none()) {
        *out = Variant();
    } else if (PyBool_Check(o)) {
        *out = Variant(o == Py_True);
    } else if (PyLong_Check(o) || (PyIndex_Check(o) && !PyFloat_Check(o))) {
        // An int, or what stands for one (the module's enumerations).
        py::object number = py::reinterpret_steal<py::object>(PyNumber_Index(o));
        if (!number) throw py::error_already_set();
        o = number.ptr();
        int overflow = 0;
        long long n = PyLong_AsLongLongAndOverflow(o, &overflow);
        if (!overflow && n >= std::numeric_limits<std::int32_t>::min() &&
            n <= std::numeric_limits<std::int32_t>::max())
            *out = Variant(static_cast<std::int32_t>(n));
        else // as the formula language does with a number too large for a Long
            *out = Variant(PyLong_AsDouble(o));
        if (PyErr_Occurred()) throw py::error_already_set();
    } else if (PyFloat_Check(o)) {
        *out = Variant(PyFloat_AsDouble(o));
    } else if (PyUnicode_Check(o)) {
        *out = Variant(value.cast<String>());
    } else if (py::isinstance(value, decimalType)) {
        py::int_ scaled = value.attr("scaleb")(4).attr("to_integral_value")();
        int overflow = 0;
        long long n = PyLong_AsLongLongAndOverflow(scaled.ptr(), &overflow);
        if (overflow) throw py::value_error("a Decimal outside the range of Currency");
        *out = Variant::currency(CY{n});
    } else if (py::isinstance(value, dateType)) {
        bool time = py::isinstance(value, dateTimeType);
        DateParts parts;
        parts.year = value.attr("year").cast<int>();
        parts.month = value.attr("month").cast<int>();
        parts.day = value.attr("day").cast<int>();
        if (time) {
            parts.hour = value.attr("hour").cast<int>();
            parts.minute = value.attr("minute").cast<int>();
            parts.second = value.attr("second").cast<int>();
            parts.millisecond = value.attr("microsecond").cast<int>() / 1000;
        }
        DATE date = 0;
        if (!dateFromParts(parts, &date))
            throw py::value_error("a date outside the years 100 to 9999");
        *out = Variant::date(date);
    } else if (py::isinstance<IUnknown>(value)) {
        *out = Variant(value.cast<IUnknown*>());
    } else if (PyList_Check(o) || PyTuple_Check(o)) {
        std::vector<Variant> items;
        for (py::handle item : value) {
            items.emplace_back();
            if (!toVariant(item, &items.back())) return false;
        }
        *out = Variant::array(std::move(items));
    } else {
        return false;
    }
    return true;
}

const void* mostDerived(IQVRCatalogObject* object, const std::type_info*& type) {
    QVRObjectType kind;
    if (object->get_objectType(&kind) != S_OK) return nullptr;
    for (const auto& [k, resolve] : kObjectKinds)
        if (k == kind) return resolve(object, type);
    return nullptr;
}

const void* mostDerived(IXMLDOMNode* node, const std::type_info*& type) {
    DOMNodeType kind = NODE_INVALID;
    node->get_nodeType(&kind);
    if (kind == NODE_ELEMENT) return as<IXMLDOMElement>(node, type);
    if (kind == NODE_DOCUMENT) return as<IXMLDOMDocument>(node, type);
    return nullptr;
}

const void* mostDerived(IUnknown* object, const std::type_info*& type) {
    if (auto* item = detail::interfaceCast<IQVRCatalogObject>(object)) {
        type = &typeid(IQVRCatalogObject);
        const void* found = mostDerived(item, type);
        return found ? found : item;
    }
    if (auto* node = detail::interfaceCast<IXMLDOMNode>(object)) {
        type = &typeid(IXMLDOMNode);
        const void* found = mostDerived(node, type);
        return found ? found : node;
    }
    for (Resolver resolve : kUnknownKinds)
        if (const void* found = resolve(object, type)) return found;
    return nullptr;
}

namespace {

// Hands the events of one root to Python. It belongs to the module, not to the library, so it
// does not keep the library from unloading.
class Sink final : public IQVRCatalogEvents {
public:
    Sink(py::object target, const void* root) : root_(root), target_(std::move(target)) {
        live().insert(this);
    }
    ~Sink() { live().erase(this); }

    std::uint32_t AddRef() override { return ++refs_; }
    std::uint32_t Release() override {
        if (--refs_ != 0) return refs_;
        py::gil_scoped_acquire gil;
        delete this;
        return 0;
    }

    HRESULT onObjectInserted(IQVRCatalogObject* object, const Variant& position) override {
        return deliver("onObjectInserted", qvrEventObjectInserted, object, &position, nullptr);
    }
    HRESULT onObjectChanged(IQVRCatalogObject* object) override {
        return deliver("onObjectChanged", qvrEventObjectChanged, object, nullptr, nullptr);
    }
    HRESULT onObjectRemoved(IQVRCatalogObject* object) override {
        return deliver("onObjectRemoved", qvrEventObjectRemoved, object, nullptr, nullptr);
    }
    HRESULT onObjectQuery(IQVRCatalogObject* object, VARIANT_BOOL flag) override {
        return deliver("onObjectQuery", qvrEventObjectQuery, object, nullptr, &flag);
    }

    static std::set<Sink*>& live() {
        static auto* sinks = new std::set<Sink*>();
        return *sinks;
    }

    const void* root_;
    std::uint32_t cookie_ = 0;

private:
    HRESULT deliver(const char* method, QVREventId event, IQVRCatalogObject* object,
                    const Variant* position, const VARIANT_BOOL* flag) {
        py::gil_scoped_acquire gil;
        try {
            py::object subject = py::cast(Ref<IQVRCatalogObject>(object));
            py::object extra = py::none();
            if (position) extra = fromVariant(*position);
            if (flag) extra = py::bool_(*flag != VARIANT_FALSE);
            if (py::hasattr(target_, method)) {
                py::object call = target_.attr(method);
                if (position || flag)
                    call(subject, extra);
                else
                    call(subject);
            } else if (PyCallable_Check(target_.ptr())) {
                target_(py::cast(event), subject, extra);
            }
            return S_OK;
        } catch (py::error_already_set& error) {
            holdSinkError(error);
        } catch (const std::exception& error) {
            PyErr_SetString(PyExc_RuntimeError, error.what());
            py::error_already_set raised;
            holdSinkError(raised);
        }
        return E_FAIL;
    }

    py::object target_;
    std::uint32_t refs_ = 0;
};

} // namespace

Ref<IQVRCatalogEvents> makeSink(py::object target, const void* root) {
    if (!PyCallable_Check(target.ptr()) && !py::hasattr(target, "onObjectInserted") &&
        !py::hasattr(target, "onObjectChanged") && !py::hasattr(target, "onObjectRemoved") &&
        !py::hasattr(target, "onObjectQuery"))
        throw py::type_error("a sink is a callable or an object with onObject... methods");
    return Ref<IQVRCatalogEvents>(new Sink(std::move(target), root));
}

void setCookie(IQVRCatalogEvents* sink, std::uint32_t cookie) {
    static_cast<Sink*>(sink)->cookie_ = cookie;
}

std::vector<std::uint32_t> cookiesAt(const void* root) {
    std::vector<std::uint32_t> cookies;
    for (Sink* sink : Sink::live())
        if (sink->root_ == root && sink->cookie_ != 0) cookies.push_back(sink->cookie_);
    return cookies;
}

const char* keep(std::string text) {
    static auto* texts = new std::deque<std::string>();
    return texts->emplace_back(std::move(text)).c_str();
}

const char* spelled(const char* name) {
    static py::handle isKeyword =
        py::object(py::module_::import("keyword").attr("iskeyword")).release();
    return isKeyword(name).cast<bool>() ? keep(std::string(name) + "_") : name;
}

const char* docOf(const char* interface, const char* member) {
    for (const ApiDoc& doc : kApiDocs)
        if (std::strcmp(doc.interface, interface) == 0 && std::strcmp(doc.member, member) == 0)
            return doc.doc;
    return "";
}

std::vector<const char*> argumentNames(const char* interface, const char* member, std::size_t n) {
    std::vector<const char*> names;
    for (const ApiDoc& doc : kApiDocs) {
        if (std::strcmp(doc.interface, interface) != 0 || std::strcmp(doc.member, member) != 0)
            continue;
        std::string list = doc.arguments;
        for (std::size_t start = 0; !list.empty() && start <= list.size();) {
            std::size_t end = list.find(',', start);
            if (end == std::string::npos) end = list.size();
            names.push_back(keep(list.substr(start, end - start)));
            start = end + 1;
        }
        if (names.size() == n) return names;
        names.clear();
    }
    for (std::size_t i = 0; i < n; ++i) names.push_back(keep("arg" + std::to_string(i)));
    return names;
}

const char* pythonName(const char* interface) {
    if (std::strncmp(interface, "IQVR", 4) == 0) return interface + 4;
    return interface[0] == 'I' ? interface + 1 : interface;
}

} // namespace qvrpy

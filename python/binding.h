// The shared pattern of the Python module: how library values become Python values and back,
// and how an operation in the status-and-out form becomes a Python method or property.
//
//   status < 0        raises qvrcatalog.Error with the status and the thread's error record
//   S_FALSE           a single out value reads as None (a boolean keeps its value)
//   out values        the return value; several of them a tuple
//   no out value      True for S_OK, False for S_FALSE
//   get_x / put_x     the property x (putref_x as well)
//
// A class is then declared as a list of its operations, e.g.
//
//   using Self = IQVRCatalogPart;
//   bind<Self>(m, QVR_PROP(name), QVR_REF(images), QVR_DO(getTable, 0));
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <qvr/qvr.h>

namespace qvrpy {

namespace py = pybind11;

// Turns a failed status into qvrcatalog.Error carrying the status and the message of the thread's
// error record (or, without one, a text naming the operation); a sink that raised while the
// operation ran has its exception raised instead.
void check(qvr::HRESULT hr, const char* operation);
[[noreturn]] void raiseError(qvr::HRESULT hr, const char* operation);

py::object fromVariant(const qvr::Variant& value);
bool toVariant(py::handle value, qvr::Variant* out);

// The most derived interface an object offers, for the Python type it is shown as: the pointer
// to that interface and its type, or null when no better type than the static one is known.
const void* mostDerived(qvr::IQVRCatalogObject* object, const std::type_info*& type);
const void* mostDerived(qvr::IXMLDOMNode* node, const std::type_info*& type);
const void* mostDerived(qvr::IUnknown* object, const std::type_info*& type);

// What the headers say of an interface or of one of its operations ("" when nothing), and the
// names of the operation's in-arguments.
const char* docOf(const char* interface, const char* member);
std::vector<const char*> argumentNames(const char* interface, const char* member, std::size_t n);
// "IQVRCatalogPart" is the Python class CatalogPart, "IXMLDOMNode" XMLDOMNode.
const char* pythonName(const char* interface);
// Keeps a text alive for the life of the module (pybind11 keeps pointers to docstrings).
const char* keep(std::string text);
// A name as Python can spell it: a keyword (`async`) takes a trailing underscore.
const char* spelled(const char* name);

// Makes qvrcatalog.Error and looks up the Python types that values convert to.
void initBasics(py::module_& m);

// A sink that hands each event of the root `root` to a Python callable or to the methods of a
// Python object, and the cookies of such sinks still advised at `root`.
qvr::Ref<qvr::IQVRCatalogEvents> makeSink(py::object target, const void* root);
void setCookie(qvr::IQVRCatalogEvents* sink, std::uint32_t cookie);
std::vector<std::uint32_t> cookiesAt(const void* root);

} // namespace qvrpy

namespace pybind11::detail {

// Nullable text: None is the null text.
template <>
struct type_caster<qvr::String> {
    PYBIND11_TYPE_CASTER(qvr::String, const_name("Optional[str]"));
    bool load(handle src, bool) {
        if (src.is_none()) {
            value = qvr::String();
            return true;
        }
        if (!PyUnicode_Check(src.ptr())) return false;
        Py_ssize_t size = 0;
        const char* text = PyUnicode_AsUTF8AndSize(src.ptr(), &size);
        if (!text) {
            PyErr_Clear();
            return false;
        }
        value = qvr::String(text, static_cast<std::size_t>(size));
        return true;
    }
    static handle cast(const qvr::String& src, return_value_policy, handle) {
        if (src.isNull()) return none().release();
        PyObject* text =
            PyUnicode_DecodeUTF8(src.c_str(), static_cast<Py_ssize_t>(src.byteLength()), "replace");
        if (!text) throw error_already_set();
        return text;
    }
};

template <>
struct type_caster<qvr::Variant> {
    PYBIND11_TYPE_CASTER(qvr::Variant, const_name("Any"));
    bool load(handle src, bool) { return qvrpy::toVariant(src, &value); }
    static handle cast(const qvr::Variant& src, return_value_policy, handle) {
        return qvrpy::fromVariant(src).release();
    }
};

// The counted reference is the holder of every class. A reference handed to Python is cast
// through its raw pointer, so that the Python object is of the most derived interface and holds
// its own reference to it.
template <class T>
struct always_construct_holder<qvr::Ref<T>> : std::true_type {};
template <class T>
class type_caster<qvr::Ref<T>> : public copyable_holder_caster<T, qvr::Ref<T>> {
public:
    static handle cast(const qvr::Ref<T>& src, return_value_policy, handle parent) {
        if (!src) return none().release();
        return type_caster_base<T>::cast(src.get(), return_value_policy::reference, parent);
    }
};

} // namespace pybind11::detail

namespace pybind11 {

template <class I>
struct polymorphic_type_hook<I, std::enable_if_t<std::is_base_of_v<qvr::IQVRCatalogObject, I> ||
                                                 std::is_base_of_v<qvr::IXMLDOMNode, I> ||
                                                 std::is_same_v<qvr::IUnknown, I>>> {
    static const void* get(const I* src, const std::type_info*& type) {
        type = nullptr;
        if (!src) return src;
        const void* found = qvrpy::mostDerived(const_cast<I*>(src), type);
        return found ? found : src;
    }
};

} // namespace pybind11

namespace qvrpy {

// Which arguments are out-arguments: pointers to values. A pointer to an interface is an object
// handed in.
template <class T>
struct IsOut : std::false_type {};
template <class T>
struct IsOut<T*> : std::bool_constant<!std::is_base_of_v<qvr::IUnknown, T>> {};
template <class T>
struct IsIn : std::bool_constant<!IsOut<T>::value> {};

template <template <class> class Pred, class... T>
using Filter = decltype(std::tuple_cat(
    std::declval<std::conditional_t<Pred<T>::value, std::tuple<T>, std::tuple<>>>()...));

// An in-argument as Python hands it over.
template <class T>
struct In {
    using type = std::decay_t<T>;
    static const type& pass(const type& v) { return v; }
};
template <>
struct In<qvr::VARIANT_BOOL> {
    using type = bool;
    static qvr::VARIANT_BOOL pass(bool v) { return v ? qvr::VARIANT_TRUE : qvr::VARIANT_FALSE; }
};

// An out-argument: where the library writes it, and what Python receives.
template <class P>
struct Out;
template <class T>
struct Out<T*> {
    using store = T;
    using type =
        std::conditional_t<std::is_arithmetic_v<T> || std::is_enum_v<T>, std::optional<T>, T>;
    static type get(const T& v) { return v; }
};
template <>
struct Out<qvr::VARIANT_BOOL*> {
    using store = qvr::VARIANT_BOOL;
    using type = bool;
    static bool get(qvr::VARIANT_BOOL v) { return v != qvr::VARIANT_FALSE; }
};

template <class C, class Ins, class Outs>
struct Caller;
template <class C, class... I, class... O>
struct Caller<C, std::tuple<I...>, std::tuple<O...>> {
    using Method = qvr::HRESULT (C::*)(I..., O...);
    using Stored = std::tuple<typename Out<O>::store...>;
    static constexpr std::size_t ins = sizeof...(I);

    static auto result(qvr::HRESULT hr, Stored& outs) {
        if constexpr (sizeof...(O) == 0) {
            return hr == qvr::S_OK;
        } else if constexpr (sizeof...(O) == 1) {
            using Only = Out<O...>;
            if constexpr (!std::is_same_v<typename Only::type, bool>)
                if (hr == qvr::S_FALSE) return typename Only::type{};
            return Only::get(std::get<0>(outs));
        } else {
            return std::apply([](auto&... v) { return std::make_tuple(Out<O>::get(v)...); }, outs);
        }
    }

    // The operation as a Python callable: (self, ins...) -> result.
    static auto callable(Method f, const char* name) {
        return [f, name](C& self, typename In<I>::type... in) {
            Stored outs{};
            qvr::ClearErrorInfo();
            qvr::HRESULT hr = std::apply(
                [&](auto&... out) { return (self.*f)(In<I>::pass(in)..., &out...); }, outs);
            check(hr, name);
            return result(hr, outs);
        };
    }

    // A setter of several values takes them as one tuple.
    static auto setter(Method f, const char* name) {
        if constexpr (sizeof...(I) == 1) {
            return callable(f, name);
        } else {
            return [call = callable(f, name)](C& self, std::tuple<typename In<I>::type...> v) {
                return std::apply([&](auto&... in) { return call(self, in...); }, v);
            };
        }
    }
};

template <class C, class... P>
auto callerOf(qvr::HRESULT (C::*)(P...)) {
    using K = Caller<C, Filter<IsIn, P...>, Filter<IsOut, P...>>;
    static_assert(std::is_same_v<typename K::Method, qvr::HRESULT (C::*)(P...)>,
                  "out-arguments follow the in-arguments");
    return K{};
}

template <class C, class... P>
const char* interfaceOf(qvr::HRESULT (C::*)(P...)) {
    return C::iid.name;
}

// The interface whose Python class is the base of interface I's: the model's objects derive from
// CatalogObject, the others from Unknown, except where a family shares more.
template <class I>
struct BaseOf {
    using type = std::conditional_t<std::is_base_of_v<qvr::IQVRCatalogObject, I>,
                                    qvr::IQVRCatalogObject, qvr::IUnknown>;
};
#define QVR_BASE(I, B)                                                                             \
    template <>                                                                                    \
    struct BaseOf<qvr::I> {                                                                        \
        using type = qvr::B;                                                                       \
    };
QVR_BASE(IQVRCatalogObject, IUnknown)
QVR_BASE(IQVRTableCell, IQVRTableCellObject)
QVR_BASE(IQVRTableInfoCell, IQVRTableCellObject)
QVR_BASE(IQVRTableDrawing, IQVRTableCellObject)
QVR_BASE(IQVRTableRefCell, IQVRTableCellObject)
QVR_BASE(IQVRTableColumnObject, IQVRTableChildObject)
QVR_BASE(IQVRTableViewObject, IQVRTableChildObject)
QVR_BASE(IQVRTableColumn, IQVRTableColumnObject)
QVR_BASE(IQVRTableUniqueColumn, IQVRTableColumnObject)
QVR_BASE(IQVRTableConstColumn, IQVRTableColumnObject)
QVR_BASE(IQVRTableCalculatedColumn, IQVRTableColumnObject)
QVR_BASE(IQVRTableRefColumn, IQVRTableColumnObject)
QVR_BASE(IQVRTableView, IQVRTableViewObject)
QVR_BASE(IQVRTableConstView, IQVRTableViewObject)
QVR_BASE(IXMLDOMElement, IXMLDOMNode)
QVR_BASE(IXMLDOMDocument, IXMLDOMNode)
#undef QVR_BASE

template <class I, class Base = typename BaseOf<I>::type>
using ClassOf = std::conditional_t<std::is_same_v<I, qvr::IUnknown>, py::class_<I, qvr::Ref<I>>,
                                   py::class_<I, Base, qvr::Ref<I>>>;

// Registers the Python classes of the interfaces, bases first. All are registered before any
// operation is, so that every signature names the Python classes of its values.
template <class... I>
void declare(py::module_& m) {
    (ClassOf<I>(m, pythonName(I::iid.name), docOf(I::iid.name, "")), ...);
}

// Adds the operations of interface I to its Python class.
template <class I>
class Binder {
public:
    using Interface = I;
    using Class = ClassOf<I>;

    explicit Binder(py::module_& m)
        : cls_(py::reinterpret_borrow<Class>(m.attr(pythonName(I::iid.name)))) {}

    Class& cls() { return cls_; }

    // An operation as a method; `defaults` are the values of its last arguments.
    template <class F, class... D>
    Binder& method(const char* name, F f, D... defaults) {
        return methodAs(name, name, f, defaults...);
    }

    // The same, for an operation whose name in the headers is `member`.
    template <class F, class... D>
    Binder& methodAs(const char* pyName, const char* member, F f, D... defaults) {
        const char* name = spelled(pyName);
        using K = decltype(callerOf(f));
        const char* interface = interfaceOf(f);
        auto names = argumentNames(interface, member, K::ins);
        auto plain = [&]<std::size_t... N>(std::index_sequence<N...>) {
            return std::make_tuple(py::arg(names[N])...);
        }
        (std::make_index_sequence<K::ins - sizeof...(D)>());
        auto given = [&]<std::size_t... N>(std::index_sequence<N...>) {
            return std::make_tuple(py::arg_v(names[K::ins - sizeof...(D) + N], defaults)...);
        }
        (std::index_sequence_for<D...>());
        std::apply(
            [&](auto&&... a) {
                cls_.def(name, K::callable(f, member), docOf(interface, member), a...);
            },
            std::tuple_cat(plain, given));
        return *this;
    }

    // A get_x operation as a read-only property.
    template <class G>
    Binder& get(const char* name, G getter) {
        using K = decltype(callerOf(getter));
        const char* member = keep(std::string("get_") + name);
        cls_.def_property_readonly(spelled(name), py::cpp_function(K::callable(getter, member)),
                                   docOf(interfaceOf(getter), member));
        return *this;
    }

    // A put_x (or putref_x) operation as a property that can only be set.
    template <class S>
    Binder& set(const char* name, S setter, const char* prefix = "put_") {
        using K = decltype(callerOf(setter));
        const char* member = keep(prefix + std::string(name));
        cls_.def_property(spelled(name), nullptr, py::cpp_function(K::setter(setter, member)),
                          docOf(interfaceOf(setter), member));
        return *this;
    }

    // A get_x operation with its put_x or putref_x as a property.
    template <class G, class S>
    Binder& prop(const char* name, G getter, S setter, const char* prefix = "put_") {
        using KG = decltype(callerOf(getter));
        using KS = decltype(callerOf(setter));
        const char* get = keep(std::string("get_") + name);
        const char* put = keep(prefix + std::string(name));
        std::string doc = docOf(interfaceOf(getter), get);
        std::string setDoc = docOf(interfaceOf(setter), put);
        if (!doc.empty() && !setDoc.empty()) doc += "\n\n";
        cls_.def_property(spelled(name), py::cpp_function(KG::callable(getter, get)),
                          py::cpp_function(KS::setter(setter, put)), keep(doc + setDoc));
        return *this;
    }

private:
    Class cls_;
};

// advise(sink) takes a callable, called as sink(event, object, position_or_flag), or an object
// whose methods onObjectInserted(object, position), onObjectChanged(object),
// onObjectRemoved(object) and onObjectQuery(object, flag) are called where it has them. A `with`
// block over the root unadvises, at its end, every sink advised from Python that is still there.
template <class Root>
void addEvents(Binder<Root>& b) {
    b.cls().def(
        "advise",
        [](Root& self, py::object sink) {
            qvr::Ref<qvr::IQVRCatalogEvents> adapter = makeSink(std::move(sink), &self);
            std::uint32_t cookie = 0;
            qvr::ClearErrorInfo();
            check(self.advise(adapter.get(), &cookie), "advise");
            setCookie(adapter.get(), cookie);
            return cookie;
        },
        py::arg("sink"), docOf(Root::iid.name, "advise"));
    b.cls().def("__enter__", [](py::object self) { return self; });
    b.cls().def("__exit__", [](Root& self, py::args) {
        for (std::uint32_t cookie : cookiesAt(&self)) self.unadvise(cookie);
        return false;
    });
}

// A list read by index: its count and its item at a zero-based index, through the list's own
// operations (`first` is the index they give the first item).
template <class List, class Item, auto Count, auto Get, std::int32_t first>
struct IndexWalk {
    static std::int32_t count(List& list) {
        std::int32_t n = 0;
        check((list.*Count)(&n), "count");
        return n;
    }
    static qvr::Ref<Item> item(List& list, std::int32_t index) {
        qvr::Ref<Item> item;
        check((list.*Get)(index + first, &item), "item");
        return item;
    }
};

template <class Walk, class List>
struct Position {
    List* list;
    std::int32_t index;
    auto operator*() const { return Walk::item(*list, index); }
    Position& operator++() {
        ++index;
        return *this;
    }
    // The walk reads the count at each step, so it stays within a list that changes under it.
    friend bool operator==(const Position& a, const Position&) {
        return a.index >= Walk::count(*a.list);
    }
};

// len(), [i] from 0 (negative from the end) and iteration over a list.
template <class Walk, class List>
void addSequence(ClassOf<List>& cls) {
    cls.def("__len__", [](List& list) { return Walk::count(list); });
    cls.def(
        "__iter__",
        [](List& list) {
            return py::make_iterator(Position<Walk, List>{&list, 0},
                                     Position<Walk, List>{&list, 0});
        },
        py::keep_alive<0, 1>());
    cls.def(
        "__getitem__",
        [](List& list, std::int32_t index) {
            std::int32_t count = Walk::count(list);
            if (index < 0) index += count;
            if (index < 0 || index >= count) throw py::index_error("list index out of range");
            return Walk::item(list, index);
        },
        py::arg("index"));
}

// Interface I as a Python class that Python code makes: its constructor calls `create`.
template <class I>
void addCreator(Binder<I>& b, qvr::HRESULT (*create)(qvr::Ref<I>*), const char* doc) {
    b.cls().def(py::init([create] {
                    qvr::Ref<I> made;
                    check(create(&made), pythonName(I::iid.name));
                    return made;
                }),
                doc);
}

// Adds the listed operations to the Python class of interface I.
template <class I, class... Ops>
Binder<I> bind(py::module_& m, Ops... ops) {
    Binder<I> b(m);
    (ops(b), ...);
    return b;
}

// The parts of the module, each adding the operations of its classes.
void bindCatalogClasses(py::module_& m);
void bindContentClasses(py::module_& m);
void bindTableClasses(py::module_& m);
void bindPlatformClasses(py::module_& m); // the enumerations and statuses, before any class
void bindPlatformOperations(py::module_& m);

} // namespace qvrpy

// The entries of bind()'s list: an operation as a method (with the default values of its last
// arguments, or under another name), a get_x, put_x or putref_x as the property x.
#define QVR_OP(...)                                                                                \
    [=](auto& b) {                                                                                 \
        using Self [[maybe_unused]] = typename std::decay_t<decltype(b)>::Interface;               \
        __VA_ARGS__;                                                                               \
    }
#define QVR_DO(name, ...) QVR_OP(b.method(#name, &Self::name __VA_OPT__(, ) __VA_ARGS__))
#define QVR_AS(name, member) QVR_OP(b.methodAs(#name, #member, &Self::member))
#define QVR_GET(name) QVR_OP(b.get(#name, &Self::get_##name))
#define QVR_SET(name) QVR_OP(b.set(#name, &Self::put_##name))
#define QVR_SETREF(name) QVR_OP(b.set(#name, &Self::putref_##name, "putref_"))
#define QVR_PROP(name) QVR_OP(b.prop(#name, &Self::get_##name, &Self::put_##name))
#define QVR_REF(name) QVR_OP(b.prop(#name, &Self::get_##name, &Self::putref_##name, "putref_"))

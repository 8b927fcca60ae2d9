// Statuses, reference counting and interface queries: the object services every operation of the
// library speaks. Numeric values are those of the platform the documents come from, so a status
// printed by a user's program means the same thing here as there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include <qvr/api.h>

namespace qvr {

using HRESULT = std::int32_t;
using VARIANT_BOOL = std::int16_t;
using LCID = std::uint32_t;

constexpr VARIANT_BOOL VARIANT_TRUE = -1;
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

constexpr HRESULT makeStatus(std::uint32_t v) {
    return static_cast<HRESULT>(v);
}

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = makeStatus(0x80004001);
constexpr HRESULT E_NOINTERFACE = makeStatus(0x80004002);
constexpr HRESULT E_POINTER = makeStatus(0x80004003);
constexpr HRESULT E_ABORT = makeStatus(0x80004004);
constexpr HRESULT E_FAIL = makeStatus(0x80004005);
constexpr HRESULT E_UNEXPECTED = makeStatus(0x8000FFFF);
constexpr HRESULT E_ACCESSDENIED = makeStatus(0x80070005);
constexpr HRESULT E_HANDLE = makeStatus(0x80070006);
constexpr HRESULT E_OUTOFMEMORY = makeStatus(0x8007000E);
constexpr HRESULT E_INVALIDARG = makeStatus(0x80070057);

constexpr HRESULT CLASS_E_NOAGGREGATION = makeStatus(0x80040110);
constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = makeStatus(0x80040111);
constexpr HRESULT CO_E_NOTINITIALIZED = makeStatus(0x800401F0);

constexpr HRESULT DISP_E_UNKNOWNINTERFACE = makeStatus(0x80020001);
constexpr HRESULT DISP_E_MEMBERNOTFOUND = makeStatus(0x80020003);
constexpr HRESULT DISP_E_PARAMNOTFOUND = makeStatus(0x80020004);
constexpr HRESULT DISP_E_TYPEMISMATCH = makeStatus(0x80020005);
constexpr HRESULT DISP_E_UNKNOWNNAME = makeStatus(0x80020006);
constexpr HRESULT DISP_E_NONAMEDARGS = makeStatus(0x80020007);
constexpr HRESULT DISP_E_BADVARTYPE = makeStatus(0x80020008);
constexpr HRESULT DISP_E_EXCEPTION = makeStatus(0x80020009);
constexpr HRESULT DISP_E_OVERFLOW = makeStatus(0x8002000A);
constexpr HRESULT DISP_E_BADINDEX = makeStatus(0x8002000B);
constexpr HRESULT DISP_E_ARRAYISLOCKED = makeStatus(0x8002000D);
constexpr HRESULT DISP_E_BADPARAMCOUNT = makeStatus(0x8002000E);
constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = makeStatus(0x8002000F);
constexpr HRESULT DISP_E_DIVBYZERO = makeStatus(0x80020012);

constexpr HRESULT STG_E_FILENOTFOUND = makeStatus(0x80030002);
constexpr HRESULT STG_E_PATHNOTFOUND = makeStatus(0x80030003);
constexpr HRESULT STG_E_ACCESSDENIED = makeStatus(0x80030005);
constexpr HRESULT STG_E_INVALIDFUNCTION = makeStatus(0x80030001);
constexpr HRESULT STG_E_WRITEFAULT = makeStatus(0x8003001D);
constexpr HRESULT STG_E_READFAULT = makeStatus(0x8003001E);
constexpr HRESULT STG_E_MEDIUMFULL = makeStatus(0x80030070);

constexpr HRESULT DV_E_FORMATETC = makeStatus(0x80040064);
constexpr HRESULT DV_E_TYMED = makeStatus(0x80040069);
constexpr HRESULT DV_E_LINDEX = makeStatus(0x80040068);
constexpr HRESULT DV_E_DVASPECT = makeStatus(0x8004006B);
constexpr HRESULT OLE_E_ADVISENOTSUPPORTED = makeStatus(0x80040003);
constexpr HRESULT DATA_S_SAMEFORMATETC = makeStatus(0x00040130);
constexpr HRESULT CONNECT_E_NOCONNECTION = makeStatus(0x80040200);
constexpr HRESULT CONNECT_E_ADVISELIMIT = makeStatus(0x80040201);

// The model's own statuses, in the interface facility.
constexpr HRESULT QVR_E_NOTFOUND = makeStatus(0x80040400);
constexpr HRESULT QVR_E_DUPLICATE = makeStatus(0x80040401);
constexpr HRESULT QVR_E_NOFILEREF = makeStatus(0x80040402);
constexpr HRESULT QVR_E_NOTCATALOG = makeStatus(0x80040404);
constexpr HRESULT QVR_E_NOTTABLE = makeStatus(0x80040405);

// Win32 error numbers carried as statuses (0x80070000 | code).
constexpr HRESULT HRESULT_FROM_WIN32(std::uint32_t code) {
    return code == 0 ? S_OK : makeStatus(0x80070000u | (code & 0xFFFFu));
}
constexpr std::uint32_t ERROR_FILE_NOT_FOUND = 2;
constexpr std::uint32_t ERROR_PATH_NOT_FOUND = 3;
constexpr std::uint32_t ERROR_ACCESS_DENIED = 5;
constexpr std::uint32_t ERROR_ALREADY_EXISTS = 183;
constexpr std::uint32_t ERROR_FILE_EXISTS = 80;

constexpr bool SUCCEEDED(HRESULT hr) {
    return hr >= 0;
}
constexpr bool FAILED(HRESULT hr) {
    return hr < 0;
}

// An interface id. Each interface names itself; two ids are equal when their names are.
struct IID {
    const char* name;
    friend bool operator==(const IID& a, const IID& b) {
        return a.name == b.name || std::strcmp(a.name, b.name) == 0;
    }
};

// Declares the interface id of an interface class: `I::iid`.
#define QVR_INTERFACE_ID(Name) static constexpr ::qvr::IID iid{#Name};

// The root of every interface: a plain (single-threaded) reference count.
class QVR_API IUnknown {
public:
    QVR_INTERFACE_ID(IUnknown)
    virtual std::uint32_t AddRef() = 0;
    virtual std::uint32_t Release() = 0;

protected:
    virtual ~IUnknown() = default;
};

// Intrusive counted reference: adds a reference on copy, releases on destruction.
template <class T>
class Ref {
public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    Ref(T* p) : p_(p) {
        if (p_) p_->AddRef();
    }
    Ref(const Ref& o) : Ref(o.p_) {}
    Ref(Ref&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ref(const Ref<U>& o) : Ref(static_cast<T*>(o.get())) {}
    // Takes over the reference of a Ref to a derived class (makeObject's result, typically)
    // instead of adding one and dropping the other.
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ref(Ref<U>&& o) noexcept : p_(o.detach()) {}
    ~Ref() { reset(); }

    Ref& operator=(const Ref& o) {
        Ref(o).swap(*this);
        return *this;
    }
    Ref& operator=(Ref&& o) noexcept {
        Ref(std::move(o)).swap(*this);
        return *this;
    }
    Ref& operator=(std::nullptr_t) {
        reset();
        return *this;
    }

    // Takes over a reference the caller already owns (no add-ref).
    static Ref adopt(T* p) {
        Ref r;
        r.p_ = p;
        return r;
    }
    // Gives up the reference without releasing it.
    T* detach() { return std::exchange(p_, nullptr); }

    void reset() {
        if (T* p = std::exchange(p_, nullptr)) p->Release();
    }
    void swap(Ref& o) noexcept { std::swap(p_, o.p_); }

    T* get() const { return p_; }
    T* operator->() const { return p_; }
    T& operator*() const { return *p_; }
    explicit operator bool() const { return p_ != nullptr; }
    operator T*() const { return p_; }

private:
    T* p_ = nullptr;
};

template <class T, class U>
bool operator==(const Ref<T>& a, const Ref<U>& b) {
    return a.get() == b.get();
}

namespace detail {

// Where interface I lies in objects of one dynamic type, seen from one base subobject: found once
// by dynamic_cast, then reused. A dynamic_cast walks the class hierarchy and compares type names
// on every call, and the model asks its objects for interfaces many times in every operation.
// The key is the object's type together with the place of `p` in it, since a base such as
// IUnknown stands several times in an object with several interfaces.
template <class I, class T>
I* interfaceCast(T* p) {
    if constexpr (std::is_convertible_v<T*, I*>) {
        return p; // a base of the static type: no search
    }
    if (!p) return nullptr;
    struct Entry {
        const std::type_info* type = nullptr;
        std::ptrdiff_t from = 0; // offset of `p` from the start of the object
        std::ptrdiff_t to = 0;   // offset of I from the start of the object; -1: not offered
    };
    constexpr std::size_t kEntries = 8;
    thread_local Entry entries[kEntries];
    thread_local std::size_t next = 0;
    char* top = static_cast<char*>(dynamic_cast<void*>(p));
    const std::type_info* type = &typeid(*p);
    const std::ptrdiff_t from = reinterpret_cast<char*>(p) - top;
    for (const Entry& e : entries)
        if (e.type == type && e.from == from)
            return e.to < 0 ? nullptr : reinterpret_cast<I*>(top + e.to);
    I* found = dynamic_cast<I*>(p);
    entries[next++ % kEntries] =
        Entry{type, from, found ? reinterpret_cast<char*>(found) - top : std::ptrdiff_t(-1)};
    return found;
}

} // namespace detail

// The interface query: the object's interface I, or an empty reference if it does not offer I.
template <class I, class T>
Ref<I> query(T* p) {
    return Ref<I>(detail::interfaceCast<I>(p));
}
template <class I, class T>
Ref<I> query(const Ref<T>& p) {
    return query<I>(p.get());
}

// Classes tell which of their interfaces report failures through the thread's error record.
class QVR_API ISupportErrorInfo : public IUnknown {
public:
    QVR_INTERFACE_ID(ISupportErrorInfo)
    virtual HRESULT InterfaceSupportsErrorInfo(const IID& iid) = 0;
};

// `S_OK` when no object of the library is alive and no lock is held, else `S_FALSE`.
QVR_API HRESULT CanUnloadNow();
// Holds (true) or releases (false) the library as if an object were alive.
QVR_API HRESULT LockServer(bool lock);

} // namespace qvr

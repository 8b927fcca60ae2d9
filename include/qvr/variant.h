// The automation variant: a tagged value whose type numbers are those of the platform the
// documents come from, so that VBScript's VarType gives the familiar answers. Cells, constants,
// positions, keys, dates and every value of the formula language travel in it.
#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <qvr/com.h>
#include <qvr/string.h>

namespace qvr {

using VARTYPE = std::uint16_t;
using DATE = double; // days since 1899-12-30, the fraction is the time of day

enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
};

// Currency: a 64-bit integer scaled by 10,000 (four decimals).
struct CY {
    std::int64_t int64 = 0;
    friend bool operator==(CY a, CY b) { return a.int64 == b.int64; }
};

// Locales.
constexpr LCID LOCALE_NEUTRAL = 0;
constexpr LCID LOCALE_INVARIANT = 0x7F;
constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x800;
constexpr LCID LOCALE_USER_DEFAULT = 0x400;
constexpr LCID LCID_EN_US = 1033;
constexpr LCID LCID_EN_GB = 2057;
constexpr LCID LCID_DE_DE = 1031;
constexpr LCID LCID_FR_FR = 1036;

// The process user locale (default 1033). LOCALE_USER_DEFAULT resolves to it.
QVR_API void SetUserLocale(LCID lcid);
QVR_API LCID GetUserLocale();

// Flags of changeType.
constexpr std::uint16_t VARIANT_NOVALUEPROP = 0x01;
constexpr std::uint16_t VARIANT_ALPHABOOL = 0x02; // booleans as "True"/"False"
constexpr std::uint16_t VARIANT_NOUSEROVERRIDE = 0x04;
constexpr std::uint16_t VARIANT_LOCALBOOL = 0x10; // booleans in the locale's words

// A value of one of the types above. Copies share an array's items until one side changes them;
// a variant moved from is Empty. Only the payload of the current type is stored, so numbers are
// as cheap to pass around as the numbers themselves.
class QVR_API Variant {
public:
    Variant() = default; // Empty
    Variant(std::int16_t v) : vt_(VT_I2) { u_.i2 = v; }
    Variant(std::int32_t v) : vt_(VT_I4) { u_.i4 = v; }
    Variant(float v) : vt_(VT_R4) { u_.r4 = v; }
    Variant(double v) : vt_(VT_R8) { u_.r8 = v; }
    // Boolean: stored as VARIANT_BOOL (-1 / 0).
    Variant(bool v) : vt_(VT_BOOL) { u_.b = v ? VARIANT_TRUE : VARIANT_FALSE; }
    // Text: VT_BSTR. A null text stays a null string of type VT_BSTR.
    Variant(const String& s) : vt_(VT_BSTR) { new (&u_.str) String(s); }
    Variant(String&& s) : vt_(VT_BSTR) { new (&u_.str) String(std::move(s)); }
    Variant(const char* s) : vt_(VT_BSTR) { new (&u_.str) String(s); }
    Variant(std::string_view s) : vt_(VT_BSTR) { new (&u_.str) String(s); }
    Variant(const std::string& s) : vt_(VT_BSTR) { new (&u_.str) String(s); }
    // Object reference: VT_DISPATCH (a null pointer gives the Nothing object).
    Variant(IUnknown* object) : vt_(VT_DISPATCH) { new (&u_.object) Ref<IUnknown>(object); }
    template <class T>
    Variant(const Ref<T>& object) : Variant(static_cast<IUnknown*>(object.get())) {}

    Variant(const Variant& o) : vt_(o.vt_) {
        if (payloadOf(vt_) == Payload::Scalar)
            u_.cy = o.u_.cy;
        else
            copyOwningPayload(o);
    }
    Variant(Variant&& o) noexcept : vt_(o.vt_) { takePayload(o); }
    Variant& operator=(const Variant& o) {
        if (this != &o) {
            // Copy first: `o` may live inside this variant's own array.
            Variant copy(o);
            *this = std::move(copy);
        }
        return *this;
    }
    Variant& operator=(Variant&& o) noexcept {
        if (this == &o) return *this;
        if (payloadOf(vt_) != Payload::Scalar) {
            Variant old(std::move(*this)); // released last: `o` may live inside it
            return *this = std::move(o);
        }
        vt_ = o.vt_;
        takePayload(o);
        return *this;
    }
    ~Variant() { destroyPayload(); }

    static Variant null() { return ofType(VT_NULL); }
    // The value of a left-out argument: VT_ERROR with DISP_E_PARAMNOTFOUND.
    static Variant missing() { return error(DISP_E_PARAMNOTFOUND); }
    static Variant error(HRESULT code) {
        Variant v = ofType(VT_ERROR);
        v.u_.scode = code;
        return v;
    }
    static Variant byte(std::uint8_t b) {
        Variant v = ofType(VT_UI1);
        v.u_.ui1 = b;
        return v;
    }
    static Variant currency(CY c) {
        Variant v = ofType(VT_CY);
        v.u_.cy = c.int64;
        return v;
    }
    static Variant date(DATE d) {
        Variant v = ofType(VT_DATE);
        v.u_.date = d;
        return v;
    }
    static Variant unknown(IUnknown* object) {
        Variant v(object);
        v.vt_ = VT_UNKNOWN;
        return v;
    }
    // A one-dimensional array of variants (VT_ARRAY | VT_VARIANT) with the given lower bound.
    static Variant array(std::vector<Variant> items, std::int32_t lowerBound = 0) {
        Variant v;
        new (&v.u_.array)
            std::shared_ptr<Array>(std::make_shared<Array>(Array{std::move(items), lowerBound}));
        v.vt_ = VT_ARRAY | VT_VARIANT;
        return v;
    }

    VARTYPE vt() const { return vt_; }
    bool isEmpty() const { return vt_ == VT_EMPTY; }
    bool isNull() const { return vt_ == VT_NULL; }
    bool isMissing() const { return vt_ == VT_ERROR && u_.scode == DISP_E_PARAMNOTFOUND; }
    bool isArray() const { return (vt_ & VT_ARRAY) != 0; }
    bool isObject() const { return vt_ == VT_DISPATCH || vt_ == VT_UNKNOWN; }

    // Raw accessors; each is meaningful only for its own type.
    std::int16_t i2() const { return u_.i2; }
    std::int32_t i4() const { return u_.i4; }
    float r4() const { return u_.r4; }
    double r8() const { return u_.r8; }
    CY cy() const { return CY{u_.cy}; }
    DATE dateValue() const { return u_.date; }
    VARIANT_BOOL boolVal() const { return u_.b; }
    std::uint8_t ui1() const { return u_.ui1; }
    HRESULT scode() const { return u_.scode; }
    // The text of a VT_BSTR; the null text for any other type.
    const String& str() const { return vt_ == VT_BSTR ? u_.str : nullString(); }
    // The text of a VT_BSTR for changing in place (appending, say); null for any other type.
    String* mutableStr() { return vt_ == VT_BSTR ? &u_.str : nullptr; }
    IUnknown* object() const { return isObject() ? u_.object.get() : nullptr; }
    // Items of an array (empty for a non-array); arrays share their items on copy.
    const std::vector<Variant>& items() const;
    std::vector<Variant>* mutableItems(); // copies the items first if they are shared
    std::int32_t lowerBound() const { return isArray() ? u_.array->lowerBound : 0; }

    // Exact identity of type and value (not VBScript's "="): for tests and containers.
    friend QVR_API bool operator==(const Variant& a, const Variant& b);

private:
    struct Array {
        std::vector<Variant> items;
        std::int32_t lowerBound = 0;
    };
    // Which member of the payload is alive: decided by the type alone.
    enum class Payload : std::uint8_t { Scalar, Text, Object, Items };
    static Payload payloadOf(VARTYPE vt) {
        if (vt == VT_BSTR) return Payload::Text;
        if (vt == VT_DISPATCH || vt == VT_UNKNOWN) return Payload::Object;
        return (vt & VT_ARRAY) ? Payload::Items : Payload::Scalar;
    }
    // A variant of a type whose payload is a scalar.
    static Variant ofType(VARTYPE vt) {
        Variant v;
        v.vt_ = vt;
        return v;
    }
    static const String& nullString();
    void copyOwningPayload(const Variant& o);
    // Moves the payload of `o` (whose type this variant already has) here; `o` becomes Empty.
    // Scalars are copied inline; the owning payloads go through one call, which also keeps the
    // compiler from following the union's members across every caller.
    void takePayload(Variant& o) noexcept {
        if (payloadOf(vt_) == Payload::Scalar)
            u_.cy = o.u_.cy;
        else
            takeOwningPayload(o);
        o.vt_ = VT_EMPTY;
    }
    void takeOwningPayload(Variant& o) noexcept;
    void destroyPayload() noexcept {
        if (payloadOf(vt_) != Payload::Scalar) destroyOwningPayload();
    }
    void destroyOwningPayload() noexcept;

    VARTYPE vt_ = VT_EMPTY;
    // One member is alive at a time, chosen by vt_: the scalars share the first eight bytes.
    union Storage {
        std::int16_t i2;
        std::int32_t i4;
        float r4;
        double r8;
        std::int64_t cy;
        DATE date;
        VARIANT_BOOL b;
        std::uint8_t ui1;
        HRESULT scode;
        String str;
        Ref<IUnknown> object;
        std::shared_ptr<Array> array;
        Storage() : cy(0) {}
        ~Storage() {}
    } u_;
};

// Converts `src` to type `vt` under locale `lcid` with the original rules (text and numbers by
// the locale's separators, rounding half to even, DISP_E_OVERFLOW, DISP_E_TYPEMISMATCH, booleans
// as "-1"/"0" unless VARIANT_ALPHABOOL or VARIANT_LOCALBOOL, dates in the short forms). `dest`
// may be the same object as `src`. On failure `dest` is left unchanged.
QVR_API HRESULT changeType(Variant* dest, const Variant& src, LCID lcid, std::uint16_t flags,
                           VARTYPE vt);

// The arithmetic family of the platform, with its result-type rules and Null propagation.
QVR_API HRESULT varAdd(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varCat(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varSub(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varMul(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varDiv(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varIdiv(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varMod(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varPow(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varAnd(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varOr(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varXor(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varEqv(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varImp(const Variant& l, const Variant& r, Variant* out);
QVR_API HRESULT varNeg(const Variant& v, Variant* out);
QVR_API HRESULT varNot(const Variant& v, Variant* out);
QVR_API HRESULT varAbs(const Variant& v, Variant* out);
QVR_API HRESULT varFix(const Variant& v, Variant* out);
QVR_API HRESULT varInt(const Variant& v, Variant* out);
QVR_API HRESULT varRound(const Variant& v, int decimals, Variant* out);

// Comparison: VARCMP_LT, VARCMP_EQ, VARCMP_GT, or VARCMP_NULL when either side is Null.
constexpr HRESULT VARCMP_LT = 0;
constexpr HRESULT VARCMP_EQ = 1;
constexpr HRESULT VARCMP_GT = 2;
constexpr HRESULT VARCMP_NULL = 3;
constexpr std::uint32_t NORM_IGNORECASE = 0x1;
QVR_API HRESULT varCmp(const Variant& l, const Variant& r, LCID lcid, std::uint32_t flags);

// OLE dates.
struct DateParts {
    int year = 1899, month = 12, day = 30, hour = 0, minute = 0, second = 0;
    int millisecond = 0;
    int dayOfWeek = 0; // 0 = Sunday (filled by dateToParts)
};
// False when the parts are out of range (years 100 to 9999).
QVR_API bool dateFromParts(const DateParts& parts, DATE* out);
QVR_API bool dateToParts(DATE date, DateParts* out);

} // namespace qvr

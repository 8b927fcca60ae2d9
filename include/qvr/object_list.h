// Lists of objects. Every list of children, every selection and every list of referenced files is
// an IQVRCatalogObjectList with a one-based index. A list of children is live: inserting or
// removing through it goes to its owner, and it follows what others do to that owner.
#pragma once

#include <cstdint>

#include <qvr/object.h>

namespace qvr {

// Walks a list: Next copies up to `count` items as object variants.
class QVR_API IEnumVARIANT : public IUnknown {
public:
    QVR_INTERFACE_ID(IEnumVARIANT)
    // S_OK when `count` items were given, S_FALSE when the list ended first; `fetched` (may be
    // null when count is 1) tells how many.
    virtual HRESULT Next(std::uint32_t count, Variant* items, std::uint32_t* fetched) = 0;
    virtual HRESULT Skip(std::uint32_t count) = 0;
    virtual HRESULT Reset() = 0;
    virtual HRESULT Clone(Ref<IEnumVARIANT>* enumerator) = 0;
};

class QVR_API IQVRCatalogObjectList : public IUnknown {
public:
    QVR_INTERFACE_ID(IQVRCatalogObjectList)

    // A new enumerator over the list (an IEnumVARIANT).
    virtual HRESULT get__NewEnum(Ref<IUnknown>* enumerator) = 0;
    // By one-based index (a number) or by key (a text, compared without regard to case).
    virtual HRESULT get_item(const Variant& indexOrKey, Ref<IQVRCatalogObject>* object) = 0;
    virtual HRESULT get_count(std::int32_t* count) = 0;
    virtual HRESULT insertBefore(IQVRCatalogObject* object, const Variant& position,
                                 VARIANT_BOOL* done) = 0;
    virtual HRESULT appendChild(IQVRCatalogObject* object, VARIANT_BOOL* done) = 0;
    virtual HRESULT removeChild(const Variant& indexOrKey, VARIANT_BOOL* done) = 0;
    // Empties the list only; the owner and its document stay as they are.
    virtual HRESULT clear() = 0;
    // Plain one-based access: E_INVALIDARG below 1, E_FAIL past the end, and no message.
    virtual HRESULT getItem(std::int32_t index, Ref<IQVRCatalogObject>* object) = 0;
};

// Range-for over a list: `for (Ref<IQVRCatalogObject> item : *list)`. The walk reads the count
// at each step, so it stays within a list that changes under it.
class ObjectListIterator {
public:
    struct End {};
    explicit ObjectListIterator(IQVRCatalogObjectList* list) : list_(list) {}
    Ref<IQVRCatalogObject> operator*() const {
        Ref<IQVRCatalogObject> item;
        list_->getItem(index_ + 1, &item);
        return item;
    }
    ObjectListIterator& operator++() {
        ++index_;
        return *this;
    }
    bool operator!=(End) const {
        std::int32_t count = 0;
        return list_->get_count(&count) == S_OK && index_ < count;
    }

private:
    IQVRCatalogObjectList* list_;
    std::int32_t index_ = 0;
};

inline ObjectListIterator begin(IQVRCatalogObjectList& list) {
    return ObjectListIterator(&list);
}
inline ObjectListIterator::End end(IQVRCatalogObjectList&) {
    return {};
}

} // namespace qvr

// The list behind every get_childNodes and selection: an ordered vector of objects, alone or
// owned. An owned list is a live view of its owner's children: inserting or removing through it
// goes to the owner, and once connected to the root of the owner's document it follows, through
// the root's events, what anyone does to that owner. A connected list changes only by events,
// so that an insertion through the list lands in it exactly once.
//
// The root does not hold a connected list (which would make a cycle: list, owner, catalog, list);
// the list holds the root and leaves it when it dies.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include <qvr/events.h>
#include <qvr/object_list.h>

#include "platform/com/error_report.h"
#include "platform/com/object_base.h"

namespace qvr {

class CQVRCatalogObjectVector final
    : public ObjectBase<IQVRCatalogObjectList, IQVRCatalogEvents, ISupportErrorInfo> {
public:
    // `owner` may be null: a plain list.
    explicit CQVRCatalogObjectVector(IQVRCatalogObject* owner = nullptr);
    ~CQVRCatalogObjectVector() override;

    // Starts listening at `root` (the catalog, or a table alone). E_FAIL on a connected list,
    // E_INVALIDARG without root.
    HRESULT connect(IQVRCatalogObject* root);

    std::size_t size() const { return items_.size(); }
    IQVRCatalogObject* at(std::size_t index) const { return items_[index].get(); }

    // IQVRCatalogObjectList
    HRESULT get__NewEnum(Ref<IUnknown>* enumerator) override;
    HRESULT get_item(const Variant& indexOrKey, Ref<IQVRCatalogObject>* object) override;
    HRESULT get_count(std::int32_t* count) override;
    HRESULT insertBefore(IQVRCatalogObject* object, const Variant& position,
                         VARIANT_BOOL* done) override;
    HRESULT appendChild(IQVRCatalogObject* object, VARIANT_BOOL* done) override;
    HRESULT removeChild(const Variant& indexOrKey, VARIANT_BOOL* done) override;
    HRESULT clear() override;
    HRESULT getItem(std::int32_t index, Ref<IQVRCatalogObject>* object) override;

    // IQVRCatalogEvents: insertions and removals under the owner keep the list in step.
    HRESULT onObjectInserted(IQVRCatalogObject* object, const Variant& position) override;
    HRESULT onObjectChanged(IQVRCatalogObject* object) override;
    HRESULT onObjectRemoved(IQVRCatalogObject* object) override;
    HRESULT onObjectQuery(IQVRCatalogObject* object, VARIANT_BOOL flag) override;

    HRESULT InterfaceSupportsErrorInfo(const IID& iid) override;

private:
    static constexpr std::uint32_t notConnected = 0xFEFEFEFE;

    HRESULT report(std::uint32_t message, HRESULT status) const;
    bool connected() const { return eventCookie_ != notConnected; }
    // The position of the first item whose key equals `key` without regard to case, or -1.
    std::ptrdiff_t findByKey(const String& key);
    std::ptrdiff_t walkForKey(const String& key) const;
    // Makes `firstByKey_` when every item's key follows its document; false when one does not.
    bool indexKeys();
    void itemsChanged() {
        keysIndexed_ = false;
        keysIndexable_ = true;
        walksSinceChange_ = 0;
    }
    HRESULT insertIntoVector(IQVRCatalogObject* object, const Variant& position);
    // Whether an event about `object` concerns the owner's children: its parent's key is the
    // owner's key (or one of the two can't be read).
    bool concernsOwner(IQVRCatalogObject* object) const;

    std::vector<Ref<IQVRCatalogObject>> items_;
    // Where each key (case folded) first stands. It holds while the items stay and the DOM
    // layer's naming version is `keysVersion_`; it is made at the second lookup after a change,
    // so that a list changed between every two lookups costs no more than the walk.
    std::unordered_map<std::string, std::size_t> firstByKey_;
    std::uint64_t keysVersion_ = 0;
    bool keysIndexed_ = false;
    bool keysIndexable_ = true;
    unsigned walksSinceChange_ = 0;
    std::uint32_t eventCookie_ = notConnected;
    Ref<IQVRCatalogObject> owner_;
    Ref<IQVRCatalogObject> root_; // where the list listens, while connected
};

} // namespace qvr

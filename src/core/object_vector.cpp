#include "core/object_vector.h"

#include "core/event_root.h"
#include "core/object_frame.h"
#include "core/vector_enumerator.h"
#include "platform/com/failure.h"
#include "platform/dom/index.h"

namespace qvr {
namespace {

// A position or key that is no text but reads as a 32-bit number is an index.
bool readIndex(const Variant& value, std::int32_t* index) {
    if (value.vt() == VT_BSTR) return false;
    Variant number;
    if (changeType(&number, value, LOCALE_USER_DEFAULT, 0, VT_I4) != S_OK) return false;
    *index = number.i4();
    return true;
}

HRESULT readKey(const Variant& value, String* key) {
    Variant text;
    HRESULT hr = changeType(&text, value, LOCALE_USER_DEFAULT, 0, VT_BSTR);
    if (hr == S_OK) *key = text.str();
    return hr;
}

} // namespace

CQVRCatalogObjectVector::CQVRCatalogObjectVector(IQVRCatalogObject* owner) : owner_(owner) {}

CQVRCatalogObjectVector::~CQVRCatalogObjectVector() {
    if (connected())
        if (auto* root = dynamic_cast<IEventRoot*>(root_.get())) root->unadvise(eventCookie_);
}

HRESULT CQVRCatalogObjectVector::report(std::uint32_t message, HRESULT status) const {
    return reportError({"QVRCatalog.ObjectVector", IQVRCatalogObjectList::iid}, message, status);
}

HRESULT CQVRCatalogObjectVector::InterfaceSupportsErrorInfo(const IID& iid) {
    return iid == IQVRCatalogObjectList::iid ? S_OK : S_FALSE;
}

HRESULT CQVRCatalogObjectVector::connect(IQVRCatalogObject* root) {
    if (connected()) return E_FAIL;
    auto* events = detail::interfaceCast<IEventRoot>(root);
    if (!events) return E_INVALIDARG;
    std::uint32_t cookie = 0;
    HRESULT hr = events->adviseListener(this, &cookie);
    if (hr != S_OK) return hr;
    eventCookie_ = cookie;
    root_ = root;
    return S_OK;
}

std::ptrdiff_t CQVRCatalogObjectVector::findByKey(const String& key) {
    const std::uint64_t version = dom::Index::namingVersion();
    if (keysIndexed_ && keysVersion_ != version) {
        keysIndexed_ = false;
        walksSinceChange_ = 0;
    }
    if (!keysIndexed_) {
        if (!keysIndexable_ || walksSinceChange_++ == 0 || !indexKeys()) return walkForKey(key);
        keysVersion_ = version;
    }
    const auto found = firstByKey_.find(key.caseFolded());
    return found == firstByKey_.end() ? -1 : static_cast<std::ptrdiff_t>(found->second);
}

bool CQVRCatalogObjectVector::indexKeys() {
    firstByKey_.clear();
    for (const auto& item : items_) {
        const auto* frame = dynamic_cast<const ObjectFrame*>(item.get());
        if (!frame || !frame->keyFollowsDocument()) {
            keysIndexable_ = false;
            firstByKey_.clear();
            return false;
        }
    }
    firstByKey_.reserve(items_.size());
    for (std::size_t i = 0; i < items_.size(); ++i) {
        String itemKey;
        if (FAILED(items_[i]->get_key(&itemKey))) continue;
        firstByKey_.emplace(itemKey.caseFolded(), i);
    }
    keysIndexed_ = true;
    return true;
}

std::ptrdiff_t CQVRCatalogObjectVector::walkForKey(const String& key) const {
    for (std::size_t i = 0; i < items_.size(); ++i) {
        String itemKey;
        if (FAILED(items_[i]->get_key(&itemKey))) continue;
        if (itemKey.equalsIgnoreCase(key.view())) return static_cast<std::ptrdiff_t>(i);
    }
    return -1;
}

HRESULT CQVRCatalogObjectVector::insertIntoVector(IQVRCatalogObject* object,
                                                  const Variant& position) {
    std::ptrdiff_t before = -1;
    switch (position.vt()) {
    case VT_EMPTY:
    case VT_ERROR: before = static_cast<std::ptrdiff_t>(items_.size()); break;
    case VT_I2:
    case VT_I4: {
        const std::int32_t index = position.vt() == VT_I2 ? position.i2() : position.i4();
        if (index < 1) return report(msgIndexZero, E_INVALIDARG);
        if (static_cast<std::size_t>(index) > items_.size())
            return report(msgIndexOutOfRange, E_INVALIDARG);
        before = index - 1;
        break;
    }
    case VT_BSTR: before = findByKey(position.str()); break;
    case VT_DISPATCH:
    case VT_UNKNOWN: {
        Ref<IQVRCatalogObject> named = query<IQVRCatalogObject>(position.object());
        String key;
        if (named && SUCCEEDED(named->get_key(&key))) before = findByKey(key);
        break;
    }
    default: return E_UNEXPECTED;
    }
    if (before < 0) return report(msgIdNotFound, E_INVALIDARG);
    items_.insert(items_.begin() + before, Ref<IQVRCatalogObject>(object));
    itemsChanged();
    return S_OK;
}

HRESULT CQVRCatalogObjectVector::get__NewEnum(Ref<IUnknown>* enumerator) {
    return guarded([&] {
        if (!enumerator) return E_POINTER;
        *enumerator = makeObject<CQVRCatalogVectorEnumerator>(this);
        return S_OK;
    });
}

HRESULT CQVRCatalogObjectVector::get_item(const Variant& indexOrKey,
                                          Ref<IQVRCatalogObject>* object) {
    return guarded([&] {
        if (!object) return E_POINTER;
        *object = nullptr;
        std::int32_t index = 0;
        if (readIndex(indexOrKey, &index)) {
            if (index >= 1 && static_cast<std::size_t>(index) <= items_.size()) {
                *object = items_[index - 1];
                return S_OK;
            }
            return report(index > 0 ? msgIndexOutOfRange : msgIndexZero, E_INVALIDARG);
        }
        String key;
        HRESULT hr = readKey(indexOrKey, &key);
        if (hr != S_OK) return hr;
        const std::ptrdiff_t found = findByKey(key);
        if (found < 0) {
            // The report says E_INVALIDARG, the call answers a mere miss.
            report(msgIdNotFound, E_INVALIDARG);
            return S_FALSE;
        }
        *object = items_[found];
        return S_OK;
    });
}

HRESULT CQVRCatalogObjectVector::get_count(std::int32_t* count) {
    if (!count) return E_POINTER;
    *count = static_cast<std::int32_t>(items_.size());
    return S_OK;
}

HRESULT CQVRCatalogObjectVector::insertBefore(IQVRCatalogObject* object, const Variant& position,
                                              VARIANT_BOOL* done) {
    return guarded([&] {
        if (!done) return E_POINTER;
        *done = VARIANT_FALSE;
        if (!object) return E_INVALIDARG;
        String key;
        HRESULT hr = object->get_key(&key);
        if (owner_) {
            hr = owner_->insertBefore(object, position, nullptr);
            if (FAILED(hr)) return hr;
        }
        // A connected list hears the owner's insertion and takes the object in from the event.
        if (!connected()) {
            HRESULT placed = insertIntoVector(object, position);
            if (FAILED(placed)) return placed;
        }
        *done = hr == S_OK ? VARIANT_TRUE : VARIANT_FALSE;
        return hr;
    });
}

HRESULT CQVRCatalogObjectVector::appendChild(IQVRCatalogObject* object, VARIANT_BOOL* done) {
    return insertBefore(object, Variant(), done);
}

HRESULT CQVRCatalogObjectVector::removeChild(const Variant& indexOrKey, VARIANT_BOOL* done) {
    return guarded([&] {
        if (!done) return E_POINTER;
        *done = VARIANT_FALSE;
        std::int32_t index = 0;
        std::ptrdiff_t found = -1;
        if (readIndex(indexOrKey, &index)) {
            if (index < 1) return report(msgIndexZero, E_INVALIDARG);
            if (static_cast<std::size_t>(index) > items_.size())
                return report(msgIndexOutOfRange, E_INVALIDARG);
            // By index, a list without owner refuses; by key it removes (below).
            if (!owner_) return S_FALSE;
            found = index - 1;
        } else {
            String key;
            HRESULT hr = readKey(indexOrKey, &key);
            if (hr != S_OK) return hr;
            found = findByKey(key);
            if (found < 0) return report(msgIdNotFound, S_FALSE);
        }
        Ref<IQVRCatalogObject> item = items_[found];
        if (owner_) {
            HRESULT hr = owner_->removeChild(item, nullptr);
            if (FAILED(hr)) return hr;
        }
        if (!connected()) {
            items_.erase(items_.begin() + found);
            itemsChanged();
        }
        *done = VARIANT_TRUE;
        return S_OK;
    });
}

HRESULT CQVRCatalogObjectVector::clear() {
    items_.clear();
    itemsChanged();
    return S_OK;
}

HRESULT CQVRCatalogObjectVector::getItem(std::int32_t index, Ref<IQVRCatalogObject>* object) {
    if (!object) return E_POINTER;
    if (index < 1) return E_INVALIDARG;
    if (static_cast<std::size_t>(index) > items_.size()) return E_FAIL;
    *object = items_[index - 1];
    return S_OK;
}

bool CQVRCatalogObjectVector::concernsOwner(IQVRCatalogObject* object) const {
    if (!owner_ || !object) return false;
    Ref<IQVRCatalogObject> parent;
    if (FAILED(object->get_parentNode(&parent))) return false;
    String ownerKey, parentKey;
    const bool ownerRead = owner_->get_key(&ownerKey) == S_OK;
    const bool parentRead = parent && parent->get_key(&parentKey) == S_OK;
    // Exact comparison, code unit by code unit.
    return !(ownerRead && parentRead && ownerKey != parentKey);
}

HRESULT CQVRCatalogObjectVector::onObjectInserted(IQVRCatalogObject* object,
                                                  const Variant& position) {
    return guarded([&] {
        if (!concernsOwner(object)) return S_OK;
        return insertIntoVector(object, position);
    });
}

HRESULT CQVRCatalogObjectVector::onObjectRemoved(IQVRCatalogObject* object) {
    return guarded([&] {
        if (!concernsOwner(object)) return S_OK;
        String key;
        HRESULT hr = object->get_key(&key);
        if (FAILED(hr)) return hr;
        const std::ptrdiff_t found = findByKey(key);
        if (found < 0) return S_FALSE;
        items_.erase(items_.begin() + found);
        itemsChanged();
        return S_OK;
    });
}

HRESULT CQVRCatalogObjectVector::onObjectChanged(IQVRCatalogObject*) {
    return S_OK;
}

HRESULT CQVRCatalogObjectVector::onObjectQuery(IQVRCatalogObject*, VARIANT_BOOL) {
    return S_OK;
}

} // namespace qvr

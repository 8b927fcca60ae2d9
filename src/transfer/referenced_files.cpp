// The walk behind getReferencedFiles: down from an object through the singletons that hold
// files (documents, images, links, a view's further files), the children, and, when deep, the
// tables of parts, binding a reference to every pointer whose holder keeps one.
#include <qvr/catalog.h>
#include <qvr/content.h>
#include <qvr/supplier.h>
#include <qvr/table.h>

#include "core/object_factory.h"
#include "core/object_types.h"
#include "core/object_vector.h"
#include "platform/com/failure.h"
#include "transfer/reference.h"

namespace qvr {
namespace {

// The objects that own the pointers found below them.
constexpr TypeSet owners = typeSet({qvrCatalog, qvrChapter, qvrPart, qvrSupplierLocation,
                                    qvrSupplier, qvrTable, qvrTableColumn, qvrRefColumn,
                                    qvrConstColumn, qvrCalculatedColumn, qvrView, qvrConstView});
// Columns whose cells are values, never pointers: nothing below them is looked at.
constexpr TypeSet valueColumns =
    typeSet({qvrTableColumn, qvrConstColumn, qvrCalculatedColumn, qvrUniqueColumn});

class ReferenceWalk {
public:
    ReferenceWalk(bool deep, CQVRCatalogObjectVector* files) : deep_(deep), files_(files) {}

    // What one object contributes, by its type.
    HRESULT collect(IQVRCatalogObject* owner, IQVRCatalogObject* object) {
        QVRObjectType type = qvrReference;
        HRESULT hr = object->get_objectType(&type);
        if (FAILED(hr)) return hr;
        switch (type) {
        case qvrCatalog: return collectCatalog(owner, object);
        case qvrChapter: return walkMedia<IQVRCatalogChapter>(owner, object);
        case qvrPart: return collectPart(owner, object);
        case qvrSupplierLocation:
            return walkSingletons<IQVRCatalogSupplierLocation>(
                owner, object, &IQVRCatalogSupplierLocation::get_orderMethods);
        case qvrSupplier: return walkMedia<IQVRCatalogSupplier>(owner, object);
        case qvrTable:
        case qvrRefColumn: return S_OK;
        case qvrView: return walkViewFiles(owner, object);
        case qvrConstView:
            hr = walkViewFiles(owner, object);
            return hr == S_OK ? addReference(owner, object) : hr;
        default: return addReference(owner, object);
        }
    }

    // Every child in order, each with its own owner when it owns its pointers.
    HRESULT walk(IQVRCatalogObject* owner, IQVRCatalogObject* object) {
        if (!object) return S_OK;
        Ref<IQVRCatalogObjectList> children;
        HRESULT hr = object->get_childNodes(&children);
        if (hr == S_FALSE || (hr == S_OK && !children)) return S_OK;
        if (hr != S_OK) return hr;
        std::int32_t count = 0;
        if (FAILED(hr = children->get_count(&count))) return hr;
        for (std::int32_t i = 1; i <= count; ++i) {
            Ref<IQVRCatalogObject> child;
            if ((hr = children->get_item(Variant(i), &child)) != S_OK) return hr;
            QVRObjectType type = qvrReference;
            if (FAILED(hr = child->get_objectType(&type))) return hr;
            IQVRCatalogObject* childOwner = contains(owners, type) ? child.get() : owner;
            if ((hr = collect(childOwner, child)) != S_OK) return hr;
            if (contains(valueColumns, type)) continue;
            if ((hr = walk(childOwner, child)) != S_OK) return hr;
        }
        return S_OK;
    }

private:
    // Walks what each singleton getter gives; a getter that gives nothing or fails is passed.
    template <class I, class... Getters>
    HRESULT walkSingletons(IQVRCatalogObject* owner, IQVRCatalogObject* object,
                           Getters... getters) {
        Ref<I> typed = query<I>(object);
        if (!typed) return S_OK;
        HRESULT hr = S_OK;
        ((hr = hr == S_OK ? walkSingleton(owner, typed.get(), getters) : hr), ...);
        return hr;
    }
    template <class I, class S>
    HRESULT walkSingleton(IQVRCatalogObject* owner, I* holder, HRESULT (I::*getter)(Ref<S>*)) {
        Ref<S> single;
        if ((holder->*getter)(&single) != S_OK || !single) return S_OK;
        return walk(owner, single.get());
    }
    // The documents, images and link of a catalog, chapter, part or supplier, in this order.
    template <class I>
    HRESULT walkMedia(IQVRCatalogObject* owner, IQVRCatalogObject* object) {
        return walkSingletons<I>(owner, object, &I::get_documents, &I::get_images, &I::get_link);
    }
    HRESULT walkViewFiles(IQVRCatalogObject* owner, IQVRCatalogObject* object) {
        return walkSingletons<IQVRTableViewObject>(owner, object, &IQVRTableViewObject::get_images,
                                                   &IQVRTableViewObject::get_xRefFiles);
    }

    HRESULT collectCatalog(IQVRCatalogObject* owner, IQVRCatalogObject* object) {
        HRESULT hr = walkMedia<IQVRCatalog>(owner, object);
        if (hr != S_OK) return hr;
        Ref<IQVRCatalogSupplier> supplier;
        if (query<IQVRCatalog>(object)->get_supplier(&supplier) != S_OK || !supplier) return S_OK;
        if ((hr = collect(supplier, supplier)) != S_OK || !deep_) return hr;
        return walk(supplier, supplier);
    }

    // A part's own media, then, when its table opens, what the table holds (deep only) and
    // the table document itself.
    HRESULT collectPart(IQVRCatalogObject* owner, IQVRCatalogObject* object) {
        HRESULT hr = walkMedia<IQVRCatalogPart>(owner, object);
        if (hr != S_OK) return hr;
        Ref<IQVRCatalogTable> table;
        if (query<IQVRCatalogPart>(object)->getTable(0, &table) != S_OK || !table) return S_OK;
        if (deep_ && (hr = walk(owner, table)) != S_OK) return hr;
        return addReference(owner, table);
    }

    HRESULT addReference(IQVRCatalogObject* owner, IQVRCatalogObject* object) {
        Ref<CQVRCatalogReference> reference = makeObject<CQVRCatalogReference>();
        const HRESULT hr = reference->bind(owner, object);
        if (hr == QVR_E_NOFILEREF) return S_OK; // the object holds no file pointer
        if (hr != S_OK) return hr;
        VARIANT_BOOL done = VARIANT_FALSE;
        return files_->appendChild(reference.get(), &done);
    }

    bool deep_;
    CQVRCatalogObjectVector* files_;
};

} // namespace

HRESULT collectReferencedFiles(IQVRCatalogObject* object, VARIANT_BOOL deep,
                               Ref<IQVRCatalogObjectList>* files) {
    return guarded([&] {
        *files = nullptr;
        Ref<CQVRCatalogObjectVector> list = makeObject<CQVRCatalogObjectVector>();
        ReferenceWalk walk(deep == VARIANT_TRUE, list.get());
        HRESULT hr = walk.collect(object, object);
        if (hr == S_OK && deep == VARIANT_TRUE) hr = walk.walk(object, object);
        if (hr != S_OK) return hr;
        *files = list.get();
        return S_OK;
    });
}

} // namespace qvr

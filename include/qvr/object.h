// The common face of every object of the model. Each object wraps one element of a catalog or
// table document (the two roots wrap a whole document) and offers the same sixteen operations;
// its own interface, named after its class, adds the operations of its kind behind them.
//
// All operations return a status and hand results back through out pointers. A null out pointer
// gives E_POINTER; out values are cleared before any other work unless an operation says
// otherwise; an object that wraps no element reports "Object not initialized" with E_FAIL.
#pragma once

#include <cstdint>

#include <qvr/com.h>
#include <qvr/dom.h>
#include <qvr/string.h>
#include <qvr/variant.h>

namespace qvr {

// The kind of an object, as get_objectType tells it.
enum QVRObjectType : std::int32_t {
    qvrCatalog = 0,
    qvrChapter = 1,
    qvrPart = 2,
    qvrImage = 3,
    qvrLink = 4,
    qvrClass = 5,
    qvrClassifications = 6,
    qvrOrderInfo = 7,
    qvrAvailability = 8,
    qvrCountryCode = 9,
    qvrOrderMethod = 10,
    qvrOrderMethods = 11,
    qvrOrderTarget = 12,
    qvrPhone = 13,
    qvrEmail = 14,
    qvrFax = 15,
    qvrTelephoneNumber = 16,
    qvrStreet = 17,
    qvrPostalAddress = 18,
    qvrAddress = 19,
    qvrSupplierLocation = 20,
    qvrSupplierID = 21,
    qvrSupplierIDs = 22,
    qvrECommerceCenterID = 23,
    qvrECommerceCenterIDs = 24,
    qvrSupplier = 25,
    qvrExtrinsics = 26,
    qvrExtrinsic = 27,
    qvrDocument = 28,
    qvrDocuments = 29,
    qvrURL = 30,
    qvrTable = 31,
    qvrImages = 32,
    qvrReferencedFiles = 33,
    qvrTableColumn = 34,
    qvrRefColumn = 35,
    qvrConstColumn = 36,
    qvrCalculatedColumn = 37,
    qvrUniqueColumn = 38,
    qvrView = 39,
    qvrConstView = 40,
    qvrDrawing = 41,
    qvrCell = 42,
    qvrRefCell = 43,
    qvrInfoCell = 44,
    qvrReference = 45,
    qvrRecipe = 46,
};

class IQVRCatalogObjectList;
class IQVRCatalogTable; // the table document's root; its interface comes with the table
class IDataObject;      // the transfer object; its interface comes with the transfer formats

class QVR_API IQVRCatalogObject : public IUnknown {
public:
    QVR_INTERFACE_ID(IQVRCatalogObject)

    // The value of the first node that `xpath` selects below this object: an attribute's value or
    // an element's text. Nothing selected: S_FALSE and `value` left as it was.
    virtual HRESULT getValue(const String& xpath, Variant* value) = 0;
    // Inserts `newChild` before the child named by `position`: empty (or left out) appends; a
    // number is a one-based index among the children; a text names a child by its key; an object
    // names a child itself. `inserted` may be null. Objects that take no children answer S_FALSE.
    virtual HRESULT insertBefore(IQVRCatalogObject* newChild, const Variant& position,
                                 Ref<IQVRCatalogObject>* inserted) = 0;
    virtual HRESULT appendChild(IQVRCatalogObject* newChild, Ref<IQVRCatalogObject>* inserted) = 0;
    // Takes `child` out of the tree; `removed` (may be null) receives a new wrapper of it.
    virtual HRESULT removeChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed) = 0;
    // A copy of the element that stands in no tree; `deep` copies its descendants too.
    virtual HRESULT cloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) = 0;
    // True when an element below this one carries the `id` that is the key of `object`.
    virtual HRESULT contains(IQVRCatalogObject* object, VARIANT_BOOL* isDescendant) = 0;
    virtual HRESULT get_key(String* key) = 0;
    // Works on any object, also one that wraps no element.
    virtual HRESULT get_objectType(QVRObjectType* type) = 0;
    // A live list of the children: it follows insertions and removals made anywhere in the
    // model. Objects that take no children answer S_FALSE and a null list.
    virtual HRESULT get_childNodes(Ref<IQVRCatalogObjectList>* list) = 0;
    // The root the object belongs to: the catalog, or the table of a table's objects.
    virtual HRESULT get_catalog(Ref<IQVRCatalogObject>* catalog) = 0;
    virtual HRESULT putref_catalog(IQVRCatalogObject* catalog) = 0;
    // The object through which this one was reached or inserted; S_FALSE and null when none.
    virtual HRESULT get_parentNode(Ref<IQVRCatalogObject>* parent) = 0;
    virtual HRESULT putref_parentNode(IQVRCatalogObject* parent) = 0;
    // The wrapped element (a root hands out its document element).
    virtual HRESULT get_domNode(Ref<IXMLDOMElement>* node) = 0;
    virtual HRESULT getDataObject(Ref<IDataObject>* dataObject) = 0;
    // The files this object refers to, as a list of reference objects.
    virtual HRESULT getReferencedFiles(VARIANT_BOOL flag, Ref<IQVRCatalogObjectList>* files) = 0;
};

} // namespace qvr

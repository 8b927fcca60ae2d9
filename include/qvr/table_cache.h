// The catalog's table cache: the tables of its parts that are open, by table key (a part's id with
// "T" behind it), in key order. It keeps each table's document, so that a table is parsed once and
// every later request wraps that same document in a new table object: what one of them changes,
// the others see.
//
// The catalog's get_tables hands it out as an IQVRCatalogObjectList. Its items are made anew at
// each request (two requests give two objects over one document), so walk it by index:
//
//   Ref<IQVRCatalogObjectList> tables;
//   catalog->get_tables(&tables);
//   for (Ref<IQVRCatalogObject> table : *tables) { ... }
//
// As a list it differs from a list of children:
// - get_item by index (1 to the count) or by key; an unknown key is a plain E_FAIL.
// - insertBefore is E_NOTIMPL: the order is the order of the keys.
// - appendChild enters a table under its key; a key in use answers S_FALSE and keeps the table
//   that was there.
// - removeChild takes a key only (another kind of argument is E_INVALIDARG); S_FALSE when the key
//   is not there.
// - its enumerator cannot hand out items: Next answers E_NOTIMPL while an entry is left.
#pragma once

#include <qvr/object_list.h>

namespace qvr {

class QVR_API IQVRCatalogObjectTableCache : public IUnknown {
public:
    QVR_INTERFACE_ID(IQVRCatalogObjectTableCache)

    // A new table object over the document cached under `key`, carrying `newKey` as its key. The
    // cache stays as it is. E_INVALIDARG for a key that is no text, E_FAIL for one not there.
    virtual HRESULT getTableAs(const Variant& key, const String& newKey,
                               Ref<IQVRCatalogTable>* table) = 0;
};

} // namespace qvr

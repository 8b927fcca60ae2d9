// The table document's root. It owns the document (or shares it with the catalog's table cache),
// is the catalog link of every column, view and cell in it, and makes all those objects.
//
// A table stands alone, and is then its own catalog: its own sinks hear its changes. Or it is
// attached to the part of a catalog (attachToCatalog): get_catalog answers with the catalog, whose
// sinks hear the changes, and its key is the part's id with "T" behind it.
//
// The class is written in three units: table.cpp (life, links, rows of its columns),
// table_properties.cpp (the root's attributes and singletons), table_factories.cpp (the create…
// operations).
#pragma once

#include <qvr/table.h>

#include "core/object_link.h"
#include "core/root_object.h"
#include "tables/table_cache_entry.h"

namespace qvr {

class CQVRCatalogTable final : public RootObject<IQVRCatalogTable, qvrTable> {
public:
    CQVRCatalogTable();

    // --- ObjectCore hooks: the root element, msgTableNotInitialized, routed firing
    // ------------------------
    bool initialized() const override { return element_ != nullptr; }
    HRESULT notInitialized() const override;
    HRESULT workElement(Ref<IXMLDOMElement>* element) override;
    HRESULT catalogObject(Ref<IQVRCatalogObject>* catalog) override;
    HRESULT insertChild(ChildTool& tool, IQVRCatalogObject* child, const Variant& position,
                        Ref<IQVRCatalogObject>* inserted, const ContainerRow& row) override;
    void fire(std::int32_t event, IQVRCatalogObject* subject, const Variant& position) override;

    // --- IQVRCatalogObject ---------------------------------------------------------------------
    // Registers the rows of the cells the column brings along, then places the column.
    HRESULT insertBefore(IQVRCatalogObject* newChild, const Variant& position,
                         Ref<IQVRCatalogObject>* inserted) override;
    // The column's cells first give up their rows (a row goes with its last cell).
    HRESULT removeChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed) override;
    // A copy of the whole document in a new table with this table's address, base and key.
    HRESULT cloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) override;
    HRESULT get_key(String* key) override;
    HRESULT get_catalog(Ref<IQVRCatalogObject>* catalog) override;
    HRESULT putref_catalog(IQVRCatalogObject* catalog) override;
    HRESULT get_parentNode(Ref<IQVRCatalogObject>* parent) override;
    // The key follows the parent: its key with "T" behind it.
    HRESULT putref_parentNode(IQVRCatalogObject* parent) override;

    // --- IQVRCatalogTable: life ----------------------------------------------------------------
    HRESULT load(const Variant& url, std::int32_t reserved, VARIANT_BOOL* ok) override;
    HRESULT loadXML(const String& xml, const String& key, std::int32_t reserved,
                    VARIANT_BOOL* ok) override;
    HRESULT create(const String& baseUrl, const String& desc, const String& language,
                   VARIANT_BOOL* ok) override;
    HRESULT saveAs(const Variant& url, VARIANT_BOOL* ok) override;
    HRESULT moveColumns(const Variant& from, const Variant& to) override;
    HRESULT freezeCalculatedColumns(VARIANT_BOOL* ok) override;

    // --- IQVRCatalogTable: new objects (table_factories.cpp) -----------------------------------
    HRESULT createURL(const String& href, const String& title, const String& language,
                      Ref<IQVRCatalogURL>* url) override;
    HRESULT createImage(IQVRCatalogObject* url, Ref<IQVRCatalogImage>* image) override;
    HRESULT createImages(IQVRCatalogObject* image, Ref<IQVRCatalogImages>* images) override;
    HRESULT createReferencedFiles(IQVRCatalogObject* reference,
                                  Ref<IQVRCatalogReferencedFiles>* files) override;
    HRESULT createView(QVRViewKey viewKey, const String& viewName, const String& desc,
                       VARIANT_BOOL visible, Ref<IQVRTableView>* view) override;
    HRESULT createDrawing(const String& key, const String& value,
                          Ref<IQVRTableDrawing>* drawing) override;
    HRESULT createCell(const String& key, const Variant& value, Ref<IQVRTableCell>* cell) override;
    HRESULT createRefCell(const String& key, const String& value, const String& desc,
                          const String& title, Ref<IQVRTableRefCell>* cell) override;
    HRESULT createColumn(QVRColumnDataType dataType, const String& name, const String& attrib,
                         const String& desc, const String& unit, VARIANT_BOOL visible,
                         Ref<IQVRTableColumn>* column) override;
    HRESULT createRefColumn(std::int32_t role, const String& name, const String& desc,
                            std::int32_t show, std::int32_t actuate, VARIANT_BOOL visible,
                            Ref<IQVRTableRefColumn>* column) override;
    HRESULT createConstView(QVRViewKey viewKey, IQVRCatalogObject* recipe, const String& viewName,
                            const String& desc, VARIANT_BOOL visible,
                            Ref<IQVRTableConstView>* view) override;
    HRESULT createConstColumn(QVRColumnDataType dataType, const String& name,
                              const String& constant, const String& attrib, const String& desc,
                              const String& unit, VARIANT_BOOL visible,
                              Ref<IQVRTableConstColumn>* column) override;
    HRESULT createCalculatedColumn(QVRColumnDataType dataType, const String& name,
                                   const String& expression, const String& attrib,
                                   const String& desc, const String& unit, VARIANT_BOOL visible,
                                   Ref<IQVRTableCalculatedColumn>* column) override;
    HRESULT createInfoCell(const String& value, Ref<IQVRTableInfoCell>* cell) override;
    HRESULT createRecipe(const String& application, Ref<IQVRTableRecipe>* recipe) override;
    HRESULT newGuid(String* guid) override;

    // --- IQVRCatalogTable: the root's properties (table_properties.cpp) ------------------------
    HRESULT get_xml(String* xml) override;
    HRESULT get_url(Variant* url) override;
    HRESULT put_url(const Variant& url) override;
    HRESULT get_uniqueColumn(Ref<IQVRTableUniqueColumn>* column) override;
    HRESULT get_language(String* language) override {
        return readRootAttribute("xml:lang", language);
    }
    HRESULT put_language(const String& language) override { return writeLanguage(language); }
    HRESULT get_fixColumn(String* fixColumn) override {
        return readRootAttribute("fixColumn", fixColumn);
    }
    HRESULT put_fixColumn(const String& fixColumn) override {
        return putClearableRootAttribute("fixColumn", fixColumn);
    }
    HRESULT get_desc(String* desc) override { return readRootAttribute("desc", desc); }
    HRESULT put_desc(const String& desc) override {
        return putClearableRootAttribute("desc", desc);
    }
    HRESULT get_version(float* version) override;
    HRESULT get_baseUrl(String* baseUrl) override;
    HRESULT put_baseUrl(const String& baseUrl) override;
    HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) override;
    HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) override;
    HRESULT get_footNote(String* footNote) override;
    HRESULT put_footNote(const String& footNote) override;

    // --- For the parts of a catalog and its table cache ----------------------------------------
    // Links the table to `catalog` and `parent` (a null one leaves that link empty), drops the
    // document, takes `key`, and loads `url` when it is not empty.
    HRESULT attachToCatalog(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                            const Variant& url, const String& key);
    // Takes over document, element, address, base and key of a cache entry.
    HRESULT adoptCacheEntry(const STableCache& entry);

private:
    // No document: msgTableNotInitialized and E_FAIL.
    HRESULT requireDocument() const;
    // The end of load and loadXML: a parse failure's text, or the check of the root element.
    HRESULT checkLoaded(HRESULT loadStatus);
    HRESULT buildDocument(const String& desc, const String& language);
    // A root attribute that a null or empty text removes (and a removal that finds nothing
    // fires nothing).
    HRESULT putClearableRootAttribute(const char* name, const String& value) noexcept;
    // The column at the one-based place `index` (null with S_OK when there is none).
    HRESULT columnFromVariant(const Variant& key, Ref<IQVRCatalogObject>* column);
    HRESULT moveColumn(std::int32_t from, std::int32_t to);
    // A new object of class T in this table's document, filled by `fill`; on a failure the out
    // value stays null. Without a `required` argument: E_INVALIDARG before anything is made.
    template <class T, class I, class Fill>
    HRESULT createChild(Ref<I>* out, bool required, Fill&& fill);
    template <class T, class I, class Fill>
    HRESULT createChild(Ref<I>* out, Fill&& fill) {
        return createChild<T>(out, true, std::forward<Fill>(fill));
    }

    Ref<IXMLDOMElement> element_; // the document element; null until a document stands
    ObjectLink catalog_;
    ObjectLink parent_;
    String cachedKey_; // a GUID text from construction; the part's id and "T" once attached
    bool answeringCatalog_ = false; // guards get_catalog against a cycle of catalog links
};

} // namespace qvr

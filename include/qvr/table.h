// The table document: the rows and columns of a family of parts. A table stands alone (made by
// CreateCatalogTable and given a document by create, load or loadXML: its own sinks hear its
// changes) or attached to the part of a catalog that refers to it (the catalog's sinks hear them).
//
//   Ref<IQVRCatalogTable> table;
//   CreateCatalogTable(&table);
//   VARIANT_BOOL ok;
//   table->create("/data/cat/", "Bolts", "en", &ok);
//   Ref<IQVRTableColumn> length;
//   table->createColumn(qvrDataTypeFloat, "Length", "", "", "mm", VARIANT_TRUE, &length);
//   table->appendChild(length, nullptr);
//   Ref<IQVRTableCell> cell;
//   table->createCell("M8x20", Variant(20.0), &cell);
//   length->appendChild(cell, nullptr); // makes the row "M8x20"
//   table->saveAs(Variant("/data/cat/bolts.xml"), &ok);
//
// Until create, load or loadXML has given it a document, a table reports "The Table is not
// initialized yet." with E_FAIL.
#pragma once

#include <cstdint>

#include <qvr/classification.h>
#include <qvr/events.h>
#include <qvr/media.h>
#include <qvr/object.h>
#include <qvr/object_list.h>
#include <qvr/table_cells.h>
#include <qvr/table_columns.h>

namespace qvr {

class QVR_API IQVRCatalogTable : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogTable)

    // Delivers an event to this table's sinks, as the catalog's fireEvent does.
    virtual HRESULT fireEvent(std::int32_t event, IQVRCatalogObject* subject,
                              const Variant& position, VARIANT_BOOL* result) = 0;
    // Loads a file (path or file: URL); `reserved` is ignored. A root other than vCATTable
    // reports "The .xml file is not an vCATCatalogTable file." with QVR_E_NOTTABLE.
    virtual HRESULT load(const Variant& url, std::int32_t reserved, VARIANT_BOOL* ok) = 0;
    // Loads a text; a non-empty `key` becomes the table's key, even when the root is refused.
    virtual HRESULT loadXML(const String& xml, const String& key, std::int32_t reserved,
                            VARIANT_BOOL* ok) = 0;
    // A new document with its unique column; an empty `desc` or `language` is not written.
    virtual HRESULT create(const String& baseUrl, const String& desc, const String& language,
                           VARIANT_BOOL* ok) = 0;
    // Saves to the stored URL. saveAs with an empty text writes nothing and succeeds.
    virtual HRESULT save(VARIANT_BOOL* ok) = 0;
    virtual HRESULT saveAs(const Variant& url, VARIANT_BOOL* ok) = 0;

    // New objects of the table, standing in no tree until a parent inserts them. The URL, the
    // images and the referenced files are those a view carries; a null argument of createURL,
    // createImage or createImages answers E_INVALIDARG.
    virtual HRESULT createURL(const String& href, const String& title, const String& language,
                              Ref<IQVRCatalogURL>* url) = 0;
    virtual HRESULT createImage(IQVRCatalogObject* url, Ref<IQVRCatalogImage>* image) = 0;
    virtual HRESULT createImages(IQVRCatalogObject* image, Ref<IQVRCatalogImages>* images) = 0;
    virtual HRESULT createReferencedFiles(IQVRCatalogObject* reference,
                                          Ref<IQVRCatalogReferencedFiles>* files) = 0;
    // A view of drawings of the side `viewKey` (E_INVALIDARG for a number that names no side);
    // an empty `viewName` or `desc` is not written.
    virtual HRESULT createView(QVRViewKey viewKey, const String& viewName, const String& desc,
                               VARIANT_BOOL visible, Ref<IQVRTableView>* view) = 0;
    // A drawing at the path or URL `value` for the row whose key is `key`.
    virtual HRESULT createDrawing(const String& key, const String& value,
                                  Ref<IQVRTableDrawing>* drawing) = 0;
    // A cell with `value` for the row whose key is `key` (made when the cell is inserted).
    virtual HRESULT createCell(const String& key, const Variant& value,
                               Ref<IQVRTableCell>* cell) = 0;
    // A link `value` for the row `key`; an empty `desc` or `title` is not written.
    virtual HRESULT createRefCell(const String& key, const String& value, const String& desc,
                                  const String& title, Ref<IQVRTableRefCell>* cell) = 0;
    // A column with a new id; a hidden column (visible VARIANT_FALSE) carries visible="0".
    virtual HRESULT createColumn(QVRColumnDataType dataType, const String& name,
                                 const String& attrib, const String& desc, const String& unit,
                                 VARIANT_BOOL visible, Ref<IQVRTableColumn>* column) = 0;
    // A reference column (QVRRefRole, QVRRefShow, QVRRefActuate; the undefined show and actuate
    // are not written). E_INVALIDARG for a number that names no word.
    virtual HRESULT createRefColumn(std::int32_t role, const String& name, const String& desc,
                                    std::int32_t show, std::int32_t actuate, VARIANT_BOOL visible,
                                    Ref<IQVRTableRefColumn>* column) = 0;
    // A const view with `recipe` as its first recipe: a null one answers E_POINTER and makes no
    // view.
    virtual HRESULT createConstView(QVRViewKey viewKey, IQVRCatalogObject* recipe,
                                    const String& viewName, const String& desc,
                                    VARIANT_BOOL visible, Ref<IQVRTableConstView>* view) = 0;
    virtual HRESULT createConstColumn(QVRColumnDataType dataType, const String& name,
                                      const String& constant, const String& attrib,
                                      const String& desc, const String& unit, VARIANT_BOOL visible,
                                      Ref<IQVRTableConstColumn>* column) = 0;
    virtual HRESULT createCalculatedColumn(QVRColumnDataType dataType, const String& name,
                                           const String& expression, const String& attrib,
                                           const String& desc, const String& unit,
                                           VARIANT_BOOL visible,
                                           Ref<IQVRTableCalculatedColumn>* column) = 0;
    // A row object with the key `value`, for the unique column's insertBefore.
    virtual HRESULT createInfoCell(const String& value, Ref<IQVRTableInfoCell>* cell) = 0;
    // A recipe for `application`; making it fires nothing.
    virtual HRESULT createRecipe(const String& application, Ref<IQVRTableRecipe>* recipe) = 0;

    // A fresh GUID text without braces.
    virtual HRESULT newGuid(String* guid) = 0;
    // Moves the column at the one-based index `from` (or the columns of an array of such
    // indexes, which keep their order) before the column that stands at `to`. Cells stay.
    virtual HRESULT moveColumns(const Variant& from, const Variant& to) = 0;
    // Replaces every calculated column by a plain column of its computed values.
    virtual HRESULT freezeCalculatedColumns(VARIANT_BOOL* ok) = 0;

    virtual HRESULT get_xml(String* xml) = 0;
    virtual HRESULT get_url(Variant* url) = 0;
    virtual HRESULT put_url(const Variant& url) = 0;
    virtual HRESULT get_uniqueColumn(Ref<IQVRTableUniqueColumn>* column) = 0;
    virtual HRESULT get_language(String* language) = 0;
    // Two lower-case letters, else "This is not a valid ISO 639 language code." and E_FAIL.
    virtual HRESULT put_language(const String& language) = 0;
    virtual HRESULT get_fixColumn(String* fixColumn) = 0;
    // A null or empty text removes the attribute.
    virtual HRESULT put_fixColumn(const String& fixColumn) = 0;
    virtual HRESULT get_desc(String* desc) = 0;
    // A null or empty text removes the attribute.
    virtual HRESULT put_desc(const String& desc) = 0;
    // The `version` attribute, in the catalog's form (see IQVRCatalog::get_version).
    virtual HRESULT get_version(float* version) = 0;
    virtual HRESULT get_baseUrl(String* baseUrl) = 0;
    virtual HRESULT put_baseUrl(const String& baseUrl) = 0;
    virtual HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) = 0;
    virtual HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) = 0;
    virtual HRESULT get_footNote(String* footNote) = 0;
    // An empty text removes the foot note.
    virtual HRESULT put_footNote(const String& footNote) = 0;

    // Adds a sink; the table holds it until unadvise.
    virtual HRESULT advise(IQVRCatalogEvents* sink, std::uint32_t* cookie) = 0;
    virtual HRESULT unadvise(std::uint32_t cookie) = 0;
};

// A new table, not initialized yet.
QVR_API HRESULT CreateCatalogTable(Ref<IQVRCatalogTable>* table);

} // namespace qvr

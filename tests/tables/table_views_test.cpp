// Views of drawings, const views of recipes and reference columns: drawings and links bound to
// rows like any cell, recipes by application, the words that name sides and link behaviour, and a
// table holding every kind of column through saving and loading.
#include <cstdint>

#include "common/temp_files.h"
#include "content/classification.h"
#include "core/object_factory.h"
#include "tables/table_fixture.h"

namespace qvr::testing {
namespace {

const char* const sides[] = {"front", "back", "left", "right", "top", "bottom", "3d", "undefined"};

Ref<IQVRTableView> addView(IQVRCatalogTable* table, QVRViewKey side, const char* name = "") {
    Ref<IQVRTableView> view;
    EXPECT_EQ(table->createView(side, name, "", VARIANT_TRUE, &view), S_OK);
    EXPECT_EQ(table->appendChild(view, nullptr), S_OK);
    return view;
}

HRESULT addDrawing(IQVRCatalogTable* table, IQVRCatalogObject* view, const char* key,
                   const char* path) {
    Ref<IQVRTableDrawing> drawing;
    EXPECT_EQ(table->createDrawing(key, path, &drawing), S_OK);
    return view->appendChild(drawing, nullptr);
}

Ref<IQVRTableRefColumn> addRefColumn(IQVRCatalogTable* table, const char* name) {
    Ref<IQVRTableRefColumn> column;
    EXPECT_EQ(table->createRefColumn(qvrRoleBr, name, "", qvrShowUndefined, qvrActuateUndefined,
                                     VARIANT_TRUE, &column),
              S_OK);
    EXPECT_EQ(table->appendChild(column, nullptr), S_OK);
    return column;
}

HRESULT addLink(IQVRCatalogTable* table, IQVRCatalogObject* column, const char* key,
                const char* link, const char* title = "") {
    Ref<IQVRTableRefCell> cell;
    EXPECT_EQ(table->createRefCell(key, link, "", title, &cell), S_OK);
    return column->appendChild(cell, nullptr);
}

// The text of the drawing or link of row `key` in `column`, through the row object; "" when the
// column has none for that row.
std::string linkAt(IQVRCatalogTable* table, IQVRCatalogObject* column, const char* key) {
    Ref<IQVRTableInfoCell> row = rowOf(table, key);
    Ref<IQVRTableCellObject> cell;
    String text;
    if (!row || row->getCell(column, &cell) != S_OK) return "";
    if (Ref<IQVRTableDrawing> drawing = query<IQVRTableDrawing>(cell)) drawing->get_value(&text);
    if (Ref<IQVRTableRefCell> link = query<IQVRTableRefCell>(cell)) link->get_value(&text);
    return text.str();
}

Ref<IQVRTableRecipe> newRecipe(IQVRCatalogTable* table, const char* application, const char* path) {
    Ref<IQVRTableRecipe> recipe;
    EXPECT_EQ(table->createRecipe(application, &recipe), S_OK);
    EXPECT_EQ(recipe->put_path(path), S_OK);
    return recipe;
}

TEST(TableViews, EachSideHasAViewWithDrawingsForSomeRows) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> name = addColumn(table, "Name");
    for (const char* key : {"A", "B", "C"})
        ASSERT_EQ(addCell(table, name, key, Variant(key)), S_OK);

    Ref<IQVRTableView> views[8];
    for (std::int32_t side = 0; side < 8; ++side) {
        views[side] = addView(table, static_cast<QVRViewKey>(side));
        EXPECT_EQ(got(views[side], &IQVRTableView::get_viewKey) + " " +
                      textAt(views[side], "@viewKey"),
                  std::to_string(side) + " " + sides[side]);
        // Row B has a drawing from every other side.
        ASSERT_EQ(addDrawing(table, views[side], "A", "views\\A.dxf"), S_OK);
        if (side % 2) {
            ASSERT_EQ(addDrawing(table, views[side], "B", "http://cad/B v2.dxf"), S_OK);
        }
    }
    // A drawing for a new key makes a row that only the view knows.
    TableListener listener(table);
    ASSERT_EQ(addDrawing(table, views[qvrViewTop], "D", "/srv/cad/D.dxf"), S_OK);
    EXPECT_EQ(listener.take(), "changed Drawing | inserted Row D | inserted Drawing D");
    EXPECT_EQ(rowKeys(table), "A B C D");

    EXPECT_EQ(linkAt(table, views[qvrViewFront], "A"), "views/A.dxf");
    EXPECT_EQ(linkAt(table, views[qvrViewBack], "B"), "http://cad/B v2.dxf");
    EXPECT_EQ(linkAt(table, views[qvrViewFront], "B"), "");
    EXPECT_EQ(linkAt(table, views[qvrViewTop], "D"), "file:///srv/cad/D.dxf");
    EXPECT_EQ(linkAt(table, views[qvrViewTop], "C"), "");
    EXPECT_EQ(childTags(views[qvrViewBack]), "Drawing Drawing");

    // A second drawing for a row of the view is refused and taken out again; a plain cell is no
    // drawing.
    Ref<IQVRTableDrawing> second;
    ASSERT_EQ(table->createDrawing("A", "other.dxf", &second), S_OK);
    EXPECT_EQ(views[qvrViewFront]->appendChild(second, nullptr), QVR_E_DUPLICATE);
    EXPECT_EQ(lastError(), "The drawing is already attached to this object.");
    EXPECT_EQ(childTags(views[qvrViewFront]), "Drawing");
    Ref<IQVRTableCell> cell;
    ASSERT_EQ(table->createCell("A", Variant("x"), &cell), S_OK);
    EXPECT_EQ(views[qvrViewFront]->appendChild(cell, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append a Drawing as a child of this object.");

    // A view's name and description are written only when given.
    EXPECT_EQ(got(views[0], &IQVRTableView::get_viewName), "S_FALSE");
    Ref<IQVRTableView> hidden;
    ASSERT_EQ(table->createView(qvrView3D, "Iso", "Isometric", VARIANT_FALSE, &hidden), S_OK);
    EXPECT_EQ(textAt(hidden, "@viewName") + "|" + textAt(hidden, "@desc") + "|" +
                  textAt(hidden, "@visible"),
              "Iso|Isometric|0");
    EXPECT_EQ(keyOf(hidden).substr(0, 1), "C");
}

// An Images group of one image, or the referenced files of one URL, at `href`.
Ref<IQVRCatalogImages> newImages(IQVRCatalogTable* table, const char* href) {
    Ref<IQVRCatalogURL> url;
    Ref<IQVRCatalogImage> image;
    Ref<IQVRCatalogImages> images;
    EXPECT_EQ(table->createURL(href, "", "", &url), S_OK);
    EXPECT_EQ(table->createImage(url, &image), S_OK);
    EXPECT_EQ(table->createImages(image, &images), S_OK);
    return images;
}

Ref<IQVRCatalogReferencedFiles> newFiles(IQVRCatalogTable* table, const char* href) {
    Ref<IQVRCatalogURL> url;
    Ref<IQVRCatalogReferencedFiles> files;
    EXPECT_EQ(table->createURL(href, "", "", &url), S_OK);
    EXPECT_EQ(table->createReferencedFiles(url, &files), S_OK);
    return files;
}

TEST(TableViews, AViewKeepsItsImagesFilesAndExtrinsicsAheadOfItsDrawings) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableView> view = addView(table, qvrViewFront, "Front");
    ASSERT_EQ(addDrawing(table, view, "A", "a.dxf"), S_OK);
    Ref<IXMLDOMElement> root;
    Ref<IXMLDOMDocument> document;
    ASSERT_EQ(table->get_domNode(&root), S_OK);
    ASSERT_EQ(root->get_ownerDocument(&document), S_OK);
    Ref<CQVRCatalogExtrinsics> extrinsics;
    ASSERT_EQ(createNewWrapper<CQVRCatalogExtrinsics>(document, table, &extrinsics), S_OK);
    Ref<IQVRCatalogImages> newImage = newImages(table, "img/front.png");
    Ref<IQVRCatalogReferencedFiles> newFile = newFiles(table, "ref/front.dxf"),
                                    otherFile = newFiles(table, "ref/other.dxf"),
                                    thirdFile = newFiles(table, "ref/third.dxf");
    TableListener listener(table);

    ASSERT_EQ(view->putref_extrinsics(extrinsics), S_OK);
    EXPECT_EQ(childTags(view), "Extrinsics Drawing");
    ASSERT_EQ(view->putref_images(newImage), S_OK);
    EXPECT_EQ(childTags(view), "Images Extrinsics Drawing");
    ASSERT_EQ(view->putref_xRefFiles(newFile), S_OK);
    EXPECT_EQ(childTags(view), "Images XRefFiles Extrinsics Drawing");
    EXPECT_EQ(listener.take(), "changed Front | changed Front | changed Front");
    Ref<IQVRCatalogImages> images;
    Ref<IQVRCatalogReferencedFiles> files;
    ASSERT_EQ(view->get_images(&images), S_OK);
    ASSERT_EQ(view->get_xRefFiles(&files), S_OK);
    EXPECT_EQ(textAt(images, "Image/URL/@xlink:href") + " " + textAt(files, "URL/@xlink:href"),
              "img/front.png ref/front.dxf");
    // The singletons are no cells: the view lists its drawings, and leaves the table with them.
    Ref<IQVRCatalogObjectList> cells;
    ASSERT_EQ(view->get_childNodes(&cells), S_OK);
    EXPECT_EQ(keysIn(cells), "A");

    // Files given to a view that has files take the place of its images; the old files stay.
    ASSERT_EQ(view->putref_xRefFiles(otherFile), S_OK);
    EXPECT_EQ(childTags(view), "XRefFiles XRefFiles Extrinsics Drawing");
    EXPECT_EQ(view->get_images(&images), S_FALSE);
    EXPECT_FALSE(images);
    // Without images to replace, nothing changes.
    EXPECT_EQ(view->putref_xRefFiles(thirdFile), S_FALSE);
    EXPECT_EQ(childTags(view), "XRefFiles XRefFiles Extrinsics Drawing");
    listener.take();
    // Removing files that are not there answers S_FALSE and tells nobody; removing images that
    // are not there is told all the same.
    Ref<IQVRTableView> bare = addView(table, qvrViewBack, "Back");
    listener.take();
    EXPECT_EQ(bare->putref_xRefFiles(nullptr), S_FALSE);
    EXPECT_EQ(listener.take(), "");
    EXPECT_EQ(bare->putref_images(nullptr), S_OK);
    EXPECT_EQ(listener.take(), "changed Back");
    ASSERT_EQ(view->putref_xRefFiles(nullptr), S_OK);
    EXPECT_EQ(childTags(view), "XRefFiles Extrinsics Drawing");

    ASSERT_EQ(table->removeChild(view, nullptr), S_OK);
    EXPECT_EQ(rowKeys(table), "");
    // The media of a view need their first child.
    Ref<IQVRCatalogImage> image;
    EXPECT_EQ(table->createImage(nullptr, &image), E_INVALIDARG);
    EXPECT_EQ(table->createImages(nullptr, &images), E_INVALIDARG);
    EXPECT_EQ(table->createReferencedFiles(nullptr, &files), E_POINTER);
}

TEST(TableViews, WordsOutsideTheirListsAreRefusedAndUnknownWordsReadAsTheFallback) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableView> view;
    EXPECT_EQ(table->createView(static_cast<QVRViewKey>(8), "", "", VARIANT_TRUE, &view),
              E_INVALIDARG);
    EXPECT_FALSE(view);
    Ref<IQVRTableConstView> constView;
    EXPECT_EQ(table->createConstView(static_cast<QVRViewKey>(-1), newRecipe(table, "CAD", "a"), "",
                                     "", VARIANT_TRUE, &constView),
              E_INVALIDARG);
    EXPECT_FALSE(constView);
    Ref<IQVRTableRefColumn> refColumn;
    EXPECT_EQ(table->createRefColumn(2, "Docs", "", 0, 0, VARIANT_TRUE, &refColumn), E_INVALIDARG);
    EXPECT_EQ(table->createRefColumn(0, "Docs", "", 4, 0, VARIANT_TRUE, &refColumn), E_INVALIDARG);
    EXPECT_EQ(table->createRefColumn(0, "Docs", "", 0, 3, VARIANT_TRUE, &refColumn), E_INVALIDARG);
    EXPECT_FALSE(refColumn);

    // The setters write nothing for a number that names no word.
    view = addView(table, qvrViewLeft);
    refColumn = addRefColumn(table, "Docs");
    EXPECT_EQ(view->put_viewKey(static_cast<QVRViewKey>(8)), E_INVALIDARG);
    EXPECT_EQ(refColumn->put_role(-1), E_INVALIDARG);
    EXPECT_EQ(refColumn->put_show(4), E_INVALIDARG);
    EXPECT_EQ(refColumn->put_actuate(3), E_INVALIDARG);
    EXPECT_EQ(textAt(view, "@viewKey") + " " + textAt(refColumn, "@role"), "left br");

    // A word of another case or none of the list reads as the fallback; an absent one leaves the
    // number alone.
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(table->loadXML("<vCATTable><ColumnUnique id='C0'/>"
                             "<ColumnView id='C1' viewKey='Front'/><ColumnView id='C2'/>"
                             "<ColumnRef id='C3' role='IMG' show='Embed' actuate='onload'/>"
                             "</vCATTable>",
                             "", 0, &ok),
              S_OK);
    Ref<IQVRCatalogObjectList> columns;
    ASSERT_EQ(table->get_childNodes(&columns), S_OK);
    Ref<IQVRCatalogObject> item;
    ASSERT_EQ(columns->getItem(1, &item), S_OK);
    EXPECT_EQ(got(query<IQVRTableView>(item), &IQVRTableView::get_viewKey),
              std::to_string(qvrViewUndefined));
    ASSERT_EQ(columns->getItem(2, &item), S_OK);
    QVRViewKey side = qvrViewTop;
    EXPECT_EQ(query<IQVRTableView>(item)->get_viewKey(&side), S_FALSE);
    EXPECT_EQ(side, qvrViewTop);
    ASSERT_EQ(columns->getItem(3, &item), S_OK);
    refColumn = query<IQVRTableRefColumn>(item);
    EXPECT_EQ(got(refColumn, &IQVRTableRefColumn::get_role) + " " +
                  got(refColumn, &IQVRTableRefColumn::get_show) + " " +
                  got(refColumn, &IQVRTableRefColumn::get_actuate),
              std::to_string(qvrRoleBr) + " " + std::to_string(qvrShowUndefined) + " " +
                  std::to_string(qvrActuateUndefined));
}

TEST(TableViews, ARowGoesWithItsLastCellOfAnyKind) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> name = addColumn(table, "Name");
    Ref<IQVRTableView> view = addView(table, qvrViewFront);
    Ref<IQVRTableRefColumn> docs = addRefColumn(table, "Docs");
    for (const char* key : {"A", "B", "C"}) {
        ASSERT_EQ(addCell(table, name, key, Variant(key)), S_OK);
        ASSERT_EQ(addDrawing(table, view, key, "a.dxf"), S_OK);
        ASSERT_EQ(addLink(table, docs, key, "a.pdf"), S_OK);
    }
    ASSERT_EQ(addDrawing(table, view, "D", "d.dxf"), S_OK);
    TableListener listener(table);

    // Row A loses its cell, then its drawing, and goes with its link.
    Ref<IQVRTableCellObject> cell;
    ASSERT_EQ(rowOf(table, "A")->getCell(name, &cell), S_OK);
    ASSERT_EQ(name->removeChild(cell, nullptr), S_OK);
    ASSERT_EQ(rowOf(table, "A")->getCell(view, &cell), S_OK);
    ASSERT_EQ(view->removeChild(cell, nullptr), S_OK);
    EXPECT_EQ(rowKeys(table), "A B C D");
    ASSERT_EQ(rowOf(table, "A")->getCell(docs, &cell), S_OK);
    listener.take();
    ASSERT_EQ(docs->removeChild(cell, nullptr), S_OK);
    EXPECT_EQ(listener.take(), "removed Row A | removed Link");
    EXPECT_EQ(rowKeys(table), "B C D");
    // A drawing is no link.
    ASSERT_EQ(rowOf(table, "B")->getCell(view, &cell), S_OK);
    EXPECT_EQ(docs->removeChild(cell, nullptr), E_FAIL);

    // Removing row B takes its cell, drawing and link out of every column and hands the row out.
    Ref<IQVRCatalogObject> removed;
    ASSERT_EQ(uniqueColumnOf(table)->removeChild(rowOf(table, "B"), &removed), S_OK);
    EXPECT_EQ(listener.take(),
              "removed Cell B | removed Drawing B | removed Link B | removed Row B");
    EXPECT_EQ(keyOf(removed), "B");
    EXPECT_EQ(childTags(view), "Drawing Drawing");
    EXPECT_EQ(valueAt(table, name, "C"), Variant("C"));
    EXPECT_TRUE(tableIsWellFormed(table));

    // Removing the view takes along row D, which only the view knew.
    ASSERT_EQ(table->removeChild(view, nullptr), S_OK);
    EXPECT_EQ(rowKeys(table), "C");

    // Every container answers a null child with E_POINTER.
    Ref<IQVRTableConstView> constView;
    ASSERT_EQ(table->createConstView(qvrViewTop, newRecipe(table, "CAD", "a"), "", "", VARIANT_TRUE,
                                     &constView),
              S_OK);
    Ref<IQVRTableUniqueColumn> unique = uniqueColumnOf(table);
    IQVRCatalogObject* containers[] = {table, name, view, docs, constView, unique};
    for (IQVRCatalogObject* container : containers)
        EXPECT_EQ(container->removeChild(nullptr, nullptr), E_POINTER) << keyOf(container);
}

TEST(TableViews, AConstViewHoldsOneRecipePerApplication) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableConstView> view;
    EXPECT_EQ(table->createConstView(qvrViewTop, nullptr, "", "", VARIANT_TRUE, &view), E_POINTER);
    EXPECT_FALSE(view);
    ASSERT_EQ(table->createConstView(qvrViewTop, newRecipe(table, "CAD", "recipes\\top.cad"), "Top",
                                     "", VARIANT_FALSE, &view),
              S_OK);
    ASSERT_EQ(view->appendChild(newRecipe(table, "CAM", "/srv/top.cam"), nullptr), S_OK);
    EXPECT_EQ(view->appendChild(newRecipe(table, "CAD", "other.cad"), nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    Ref<IQVRTableDrawing> drawing;
    ASSERT_EQ(table->createDrawing("A", "a.dxf", &drawing), S_OK);
    EXPECT_EQ(view->appendChild(drawing, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append a Recipe as a child of this object.");

    // Its recipes are no cells: the table makes no rows for them.
    ASSERT_EQ(table->appendChild(view, nullptr), S_OK);
    EXPECT_EQ(rowKeys(table), "");
    EXPECT_EQ(textAt(view, "@viewKey") + " " + textAt(view, "@viewName"), "top Top");
    Ref<IQVRCatalogObjectList> recipes;
    ASSERT_EQ(view->get_childNodes(&recipes), S_OK);
    EXPECT_EQ(keysIn(recipes), "CAD CAM");
    Ref<IQVRCatalogObject> item;
    ASSERT_EQ(recipes->getItem(1, &item), S_OK);
    EXPECT_EQ(got(query<IQVRTableRecipe>(item), &IQVRTableRecipe::get_path), "recipes/top.cad");
    ASSERT_EQ(recipes->getItem(2, &item), S_OK);
    EXPECT_EQ(got(query<IQVRTableRecipe>(item), &IQVRTableRecipe::get_path), "file:///srv/top.cam");

    // It keeps its last recipe.
    ASSERT_EQ(view->removeChild(item, nullptr), S_OK);
    ASSERT_EQ(recipes->getItem(1, &item), S_OK);
    EXPECT_EQ(view->removeChild(item, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can't remove the last child of this object.");
    ASSERT_EQ(view->get_childNodes(&recipes), S_OK);
    EXPECT_EQ(keysIn(recipes), "CAD");
}

TEST(TableViews, AReferenceColumnKeepsItsLinksExactly) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableRefColumn> docs;
    ASSERT_EQ(table->createRefColumn(qvrRoleImg, "Docs", "Data sheets", qvrShowNew,
                                     qvrActuateUndefined, VARIANT_FALSE, &docs),
              S_OK);
    ASSERT_EQ(table->appendChild(docs, nullptr), S_OK);
    EXPECT_EQ(textAt(docs, "@name") + "|" + textAt(docs, "@role") + "|" + textAt(docs, "@desc") +
                  "|" + textAt(docs, "@show") + "|" + textAt(docs, "@actuate") + "|" +
                  textAt(docs, "@visible"),
              "Docs|img|Data sheets|new||0");
    QVRColumnDataType type = qvrDataTypeInt;
    String unit("mm");
    EXPECT_EQ(docs->get_dataType(&type), E_NOTIMPL);
    EXPECT_EQ(docs->get_unit(&unit), E_NOTIMPL);
    EXPECT_TRUE(unit.isNull());
    EXPECT_EQ(docs->put_dataType(qvrDataTypeString), E_NOTIMPL);

    const char* links[][2] = {
        {"A", "sheets/data sheet A.pdf"},
        {"B", "https://example.com/a b/?q=1&r=%20"},
        {"C", "../up/  two  spaces .pdf "},
        {"D", "mailto:sales@example.com"},
    };
    for (const auto& [key, link] : links) ASSERT_EQ(addLink(table, docs, key, link, key), S_OK);
    for (const auto& [key, link] : links) EXPECT_EQ(linkAt(table, docs, key), link) << key;
    ASSERT_EQ(addLink(table, docs, "E", "sheets\\E.pdf"), S_OK);
    EXPECT_EQ(linkAt(table, docs, "E"), "sheets/E.pdf");

    // A link's description and title are written only when given, and removed when emptied.
    Ref<IQVRTableCellObject> found;
    ASSERT_EQ(rowOf(table, "A")->getCell(docs, &found), S_OK);
    Ref<IQVRTableRefCell> cell = query<IQVRTableRefCell>(found);
    EXPECT_EQ(got(cell, &IQVRTableRefCell::get_desc), "S_FALSE");
    EXPECT_EQ(got(cell, &IQVRTableRefCell::get_title), "A");
    TableListener listener(table);
    EXPECT_EQ(cell->put_title(""), S_OK);
    EXPECT_EQ(cell->put_title(""), S_OK);
    EXPECT_EQ(cell->put_desc("Sheet"), S_OK);
    EXPECT_EQ(listener.take(), "changed Link A | changed Link A");
    EXPECT_EQ(got(cell, &IQVRTableRefCell::get_title), "S_FALSE");

    // The undefined show and actuate stand for no attribute.
    EXPECT_EQ(docs->put_show(qvrShowUndefined), S_OK);
    EXPECT_EQ(docs->put_show(qvrShowUndefined), S_OK);
    EXPECT_EQ(docs->put_actuate(qvrActuateOnRequest), S_OK);
    EXPECT_EQ(listener.take(), "changed Docs | changed Docs");
    std::int32_t show = -1;
    EXPECT_EQ(docs->get_show(&show), S_FALSE);
    EXPECT_EQ(show, -1);
    EXPECT_EQ(textAt(docs, "@actuate"), "onRequest");
}

using TableKinds = TempFiles;

TEST_F(TableKinds, ATableOfEveryKindReadsBackEqualAfterSavingAndLoading) {
    Ref<IQVRCatalogTable> table = newTable("Every kind", "en");
    Ref<IQVRTableColumn> length = addColumn(table, "Length", qvrDataTypeFloat);
    Ref<IQVRTableConstColumn> density;
    ASSERT_EQ(table->createConstColumn(qvrDataTypeFloat, "Density", "7.85", "", "", "g/cm3",
                                       VARIANT_TRUE, &density),
              S_OK);
    ASSERT_EQ(table->appendChild(density, nullptr), S_OK);
    Ref<IQVRTableCalculatedColumn> weight;
    ASSERT_EQ(table->createCalculatedColumn(qvrDataTypeFloat, "Weight", "Length * Density", "", "",
                                            "g", VARIANT_TRUE, &weight),
              S_OK);
    ASSERT_EQ(table->appendChild(weight, nullptr), S_OK);
    Ref<IQVRTableView> front = addView(table, qvrViewFront, "Front");
    ASSERT_EQ(front->putref_images(newImages(table, "img/front.png")), S_OK);
    ASSERT_EQ(front->putref_xRefFiles(newFiles(table, "http://cad/front.step")), S_OK);
    Ref<IQVRTableConstView> top;
    ASSERT_EQ(table->createConstView(qvrViewTop, newRecipe(table, "CAD", "r/top.cad"), "Top", "",
                                     VARIANT_TRUE, &top),
              S_OK);
    ASSERT_EQ(top->appendChild(newRecipe(table, "CAM", "r/top.cam"), nullptr), S_OK);
    ASSERT_EQ(table->appendChild(top, nullptr), S_OK);
    Ref<IQVRTableRefColumn> docs = addRefColumn(table, "Docs");
    const char* keys[] = {"M8", "M10 long", "M12"};
    for (const char* key : keys) {
        ASSERT_EQ(addCell(table, length, key, Variant(20.5)), S_OK);
        ASSERT_EQ(addDrawing(table, front, key, (std::string("d/") + key + ".dxf").c_str()), S_OK);
        ASSERT_EQ(addLink(table, docs, key, (std::string("s/") + key + " .pdf").c_str(), key),
                  S_OK);
    }
    // The kinds move among each other by place: the reference column to the front, the view
    // behind the const view.
    ASSERT_EQ(table->moveColumns(Variant(std::int32_t(6)), Variant(std::int32_t(1))), S_OK);
    ASSERT_EQ(table->moveColumns(Variant(std::int32_t(5)), Variant(std::int32_t(7))), S_OK);
    const char* order =
        "ColumnUnique ColumnRef Column ColumnConst ColumnCalc ColumnConstView ColumnView";
    EXPECT_EQ(childTags(table), order);
    EXPECT_EQ(linkAt(table, front, "M10 long"), "d/M10 long.dxf");
    // Moving a row moves its drawing to the row's place in the view; its link goes last.
    ASSERT_EQ(uniqueColumnOf(table)->moveRows(Variant(std::int32_t(1)), Variant(std::int32_t(3))),
              S_OK);
    EXPECT_EQ(rowKeys(table), "M10 long M8 M12");
    EXPECT_EQ(textAt(front, "Drawing[2]") + "|" + textAt(docs, "RowRef[3]"), "d/M8.dxf|s/M8 .pdf");
    // Plain columns of text and of whole numbers with a gap, a key that XML must escape and a
    // foot note come back too.
    Ref<IQVRTableColumn> name = addColumn(table, "Name"),
                         count = addColumn(table, "Count", qvrDataTypeInt);
    const char* allKeys[] = {"M10 long", "M8", "M12", "Ø10 & <x>"};
    for (int i = 0; i < 4; ++i) {
        ASSERT_EQ(addCell(table, name, allKeys[i], Variant(std::string("Bolt ") + allKeys[i])),
                  S_OK);
        if (i != 1) {
            ASSERT_EQ(addCell(table, count, allKeys[i], Variant(std::int32_t(100 * (i + 1)))),
                      S_OK);
        }
    }
    ASSERT_EQ(table->put_footNote("Zinc plated"), S_OK);

    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(table->saveAs(Variant(file("every.xml")), &ok), S_OK);
    Ref<IQVRCatalogTable> loaded;
    ASSERT_EQ(CreateCatalogTable(&loaded), S_OK);
    ASSERT_EQ(loaded->load(Variant(file("every.xml")), 0, &ok), S_OK);
    String saved, read;
    ASSERT_EQ(table->get_xml(&saved), S_OK);
    ASSERT_EQ(loaded->get_xml(&read), S_OK);
    EXPECT_EQ(read, saved);

    // Each kind comes back as its class, and reads as it was written.
    EXPECT_EQ(childTags(loaded), childTags(table));
    EXPECT_EQ(rowKeys(loaded), rowKeys(table));
    Ref<IQVRCatalogObjectList> columns;
    ASSERT_EQ(loaded->get_childNodes(&columns), S_OK);
    Ref<IQVRCatalogObject> column[8];
    for (std::int32_t c = 0; c < 8; ++c) ASSERT_EQ(columns->getItem(c + 1, &column[c]), S_OK);
    ASSERT_TRUE(query<IQVRTableRefColumn>(column[0]) && query<IQVRTableColumn>(column[1]) &&
                query<IQVRTableConstColumn>(column[2]) &&
                query<IQVRTableCalculatedColumn>(column[3]) &&
                query<IQVRTableConstView>(column[4]) && query<IQVRTableView>(column[5]));
    for (const char* key : allKeys) {
        EXPECT_EQ(valueAt(loaded, column[6], key), valueAt(table, name, key)) << key;
        EXPECT_EQ(valueAt(loaded, column[7], key), valueAt(table, count, key)) << key;
    }
    EXPECT_EQ(valueAt(loaded, column[7], "M12"), Variant(std::int32_t(300)));
    EXPECT_TRUE(valueAt(loaded, column[7], "M8").isEmpty()); // a gap stays a gap
    String text;
    EXPECT_EQ(got(loaded, &IQVRCatalogTable::get_footNote), "Zinc plated");
    for (const char* key : keys) {
        EXPECT_EQ(linkAt(loaded, column[0], key), linkAt(table, docs, key)) << key;
        EXPECT_EQ(valueAt(loaded, column[1], key), valueAt(table, length, key)) << key;
        EXPECT_EQ(linkAt(loaded, column[5], key), linkAt(table, front, key)) << key;
        Variant computed, expected;
        ASSERT_EQ(query<IQVRTableCalculatedColumn>(column[3])->calculate(Variant(key), &computed),
                  S_OK);
        ASSERT_EQ(weight->calculate(Variant(key), &expected), S_OK);
        EXPECT_EQ(computed, expected) << key;
    }
    Ref<IQVRCatalogObjectList> recipes;
    ASSERT_EQ(column[4]->get_childNodes(&recipes), S_OK);
    EXPECT_EQ(keysIn(recipes), "CAD CAM");
    EXPECT_EQ(got(query<IQVRTableConstView>(column[4]), &IQVRTableConstView::get_viewKey),
              std::to_string(qvrViewTop));
    Ref<IQVRCatalogReferencedFiles> files;
    ASSERT_EQ(query<IQVRTableView>(column[5])->get_xRefFiles(&files), S_OK);
    EXPECT_EQ(textAt(files, "URL/@xlink:href"), "http://cad/front.step");
}

} // namespace
} // namespace qvr::testing

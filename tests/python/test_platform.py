"""The faces under the model: the DOM, streams, data objects, packets and class objects."""
import pytest

import qvrcatalog as qvr


def test_dom_streams_and_hand_over(tmp_path):
    catalog = qvr.Catalog()
    catalog.create(f"{tmp_path}/", "Fasteners", "en")
    part = catalog.appendChild(catalog.createChapter("Bolts")).appendChild(catalog.createPart("M8"))

    # DOM nodes come as their own kinds; node lists are sequences.
    element = part.domNode
    assert isinstance(element, qvr.XMLDOMElement) and element.getAttribute("name") == "M8"
    assert isinstance(element.ownerDocument, qvr.XMLDOMDocument)
    assert [n.nodeName for n in catalog.domNode.selectNodes("//Part")] == ["Part"]
    assert element.selectSingleNode("Nothing") is None
    document = qvr.XMLDOMDocument()
    assert document.loadXML("<a><b/>text</a>")
    assert [n.nodeType for n in document.documentElement.childNodes] == [qvr.NODE_ELEMENT, qvr.NODE_TEXT]
    assert document.loadXML("<a>") is False and document.parseError.errorCode != 0

    # A stream takes and gives bytes.
    stream = qvr.Stream()
    assert stream.Write(b"\x00bytes") == 6 and stream.Seek(0) == 0
    assert stream.Read(100) == b"\x00bytes" and stream.Stat() == 6

    # The data object renders the part as text; a packet gives the part itself back here.
    data = part.getDataObject()
    xml = qvr.RegisterClipboardFormat("CF_QVRXML")
    assert data.QueryGetData(xml) and not data.QueryGetData(qvr.CF_UNICODETEXT)
    assert 'name="M8"'.encode("utf-16-le") in data.GetData(xml)
    packet = qvr.CoMarshalInterface(part)
    back = qvr.CoUnmarshalInterface(packet)
    assert isinstance(back, qvr.CatalogPart) and back.key == part.key
    with pytest.raises(qvr.Error) as raised:
        qvr.CoUnmarshalInterface(b"not a packet")
    assert raised.value.status == qvr.RPC_E_INVALID_DATA

    # The class objects make the two roots.
    table = qvr.DllGetClassObject(qvr.CLSID_QVRCatalogTable).CreateInstance("IQVRCatalogTable")
    assert isinstance(table, qvr.CatalogTable)
    with pytest.raises(qvr.Error):
        qvr.DllGetClassObject("QVRCatalog.Nothing")


def test_a_table_standing_alone(tmp_path):
    table = qvr.CatalogTable()
    table.create(f"{tmp_path}/", "Bolts", "en")
    heard = []
    with table:
        table.advise(lambda event, obj, extra: heard.append(event))
        a = table.appendChild(table.createColumn(qvr.qvrDataTypeInt, "A", "", "", "", True))
        b = table.appendChild(table.createColumn(1, "B", "", "", "", True))  # an int for an enum
        a.appendChild(table.createCell("r1", 1))
        a.appendChild(table.createCell("r2", 2))
    assert heard and heard[0] == qvr.qvrEventObjectInserted
    assert [c.name for c in table.childNodes] == ["A", "B"]
    table.moveColumns([2], 1)  # a list travels as an array
    assert [c.name for c in table.childNodes] == ["B", "A"]
    table.uniqueColumn.moveRows(2, 1)
    assert [row.domNode.text for row in table.uniqueColumn.childNodes] == ["r2", "r1"]
    assert [cell.value for cell in a.childNodes] == [2, 1]

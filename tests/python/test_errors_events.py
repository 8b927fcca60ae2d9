"""Failures raise the library's message; events reach Python callables and objects."""
import pytest

import qvrcatalog as qvr


def new_catalog(tmp_path):
    catalog = qvr.Catalog()
    catalog.create(f"{tmp_path}/", "Fasteners", "en")
    return catalog


def test_failures_raise_the_library_status_and_message(tmp_path):
    with pytest.raises(qvr.Error) as raised:
        qvr.Catalog().name
    assert str(raised.value).startswith("The Catalog is not initialized yet.")
    assert raised.value.status == qvr.E_FAIL and raised.value.source

    catalog = new_catalog(tmp_path)
    with pytest.raises(qvr.Error, match="^This is not a valid ISO 639 language code.$"):
        catalog.language = "English"
    assert catalog.language == "en"

    (tmp_path / "table.xml").write_text("<vCATTable/>")
    with pytest.raises(qvr.Error, match="is not an vCATCatalog file") as raised:
        catalog.load(str(tmp_path / "table.xml"))
    assert raised.value.status == qvr.QVR_E_NOTCATALOG

    # A status without a message still names the operation.
    with pytest.raises(qvr.Error, match="getItem failed with status 0x80070057"):
        catalog.childNodes.getItem(0)
    with pytest.raises(IndexError):
        catalog.childNodes[0]
    with pytest.raises(KeyError):
        catalog.childNodes["no such key"]
    # Nothing there reads as None.
    assert catalog.extrinsics is None and catalog.supplier is None


def test_events_reach_callables_and_sink_objects(tmp_path):
    catalog = new_catalog(tmp_path)
    heard = []
    catalog.advise(lambda event, obj, extra: heard.append((event, type(obj).__name__, extra)))

    class Sink:
        def __init__(self):
            self.changed = []

        def onObjectChanged(self, obj):
            self.changed.append(obj.name)

    sink = Sink()
    cookie = catalog.advise(sink)
    chapter = catalog.appendChild(catalog.createChapter("Bolts"))
    chapter.name = "Screws"
    catalog.removeChild(chapter)
    assert heard == [(qvr.qvrEventObjectInserted, "CatalogChapter", None),
                     (qvr.qvrEventObjectChanged, "CatalogChapter", None),
                     (qvr.qvrEventObjectRemoved, "CatalogChapter", None)]
    assert sink.changed == ["Screws"]

    catalog.unadvise(cookie)
    catalog.name = "Parts"
    assert sink.changed == ["Screws"] and heard[-1][0] == qvr.qvrEventObjectChanged

    # A sink that raises: the change is made, the exception reaches the caller.
    def refuse(event, obj, extra):
        raise RuntimeError("refused")

    with catalog:
        catalog.advise(refuse)
        with pytest.raises(RuntimeError, match="refused"):
            catalog.desc = "Bolts and screws"
        assert catalog.desc == "Bolts and screws"
    # The with block unadvised every sink of this catalog.
    count = len(heard)
    catalog.name = "Fasteners"
    assert len(heard) == count

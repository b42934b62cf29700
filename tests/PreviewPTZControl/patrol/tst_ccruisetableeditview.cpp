#include "support/records.h"

#include "patrol/ccruisetableeditmodel.h"
#include "patrol/ccruisetableeditview.h"

#include <QSignalSpy>
#include <QtTest>

using PreviewPTZControl::CCruiseComboBox;
using PreviewPTZControl::CCruiseTableEditModel;
using PreviewPTZControl::CCruiseTableEditView;
using ptz_plugin_protocol::CruisePoint;

using Triples = QVector<QVector<int>>; // preset, speed, dwell per point

namespace {
Triples Read(const std::vector<CruisePoint> &points)
{
    Triples result;
    for (const CruisePoint &p : points)
        result << QVector<int>{int(p.preset_index), p.speed, p.dwell_time};
    return result;
}
} // namespace

class TstCCruiseTableEditView : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        qRegisterMetaType<CCruiseTableEditView::IndexPlace>();
        m_view = new CCruiseTableEditView;
        m_view->resize(300, 400);
        m_view->show();
    }
    void cleanup() { delete m_view; }
    void presetEntriesByTypeAndFlag_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<CCruiseComboBox::Entries>("entries");
        QTest::newRow("device presets, the kept one withheld")
            << 1 << CCruiseComboBox::Entries{{"Gate", 1}, {"Preset2", 2}, {"Yard", 3}};
        QTest::newRow("virtual presets") << 3 << CCruiseComboBox::Entries{{"Virtual", 4}};
    }
    void presetEntriesByTypeAndFlag()
    {
        QFETCH(int, type);
        QFETCH(CCruiseComboBox::Entries, entries);
        show({}, type);
        QCOMPARE(m_view->GetEditModel()->PresetEntries(), entries);
        // Without a preset of its kind the path gets no point.
        QCOMPARE(m_view->AddPoint().isValid(), !entries.isEmpty());
    }
    void pointsReadBackSkipInvalid_data()
    {
        QTest::addColumn<Triples>("points");
        QTest::addColumn<Triples>("expected");
        QTest::newRow("valid") << Triples{{1, 5, 20}, {3, 40, 30}} << Triples{{1, 5, 20}, {3, 40, 30}};
        QTest::newRow("preset 0") << Triples{{0, 5, 20}, {3, 40, 30}} << Triples{{3, 40, 30}};
        QTest::newRow("speed 0") << Triples{{1, 0, 20}, {3, 40, 30}} << Triples{{3, 40, 30}};
        QTest::newRow("dwell 0") << Triples{{1, 5, 0}, {3, 40, 30}} << Triples{{3, 40, 30}};
        // A value the drop-down does not offer falls back to its first entry.
        QTest::newRow("dwell outside the range") << Triples{{1, 5, 99}} << Triples{{1, 5, 15}};
    }
    void pointsReadBackSkipInvalid()
    {
        QFETCH(Triples, points);
        QFETCH(Triples, expected);
        m_view->GetEditModel()->SetDwellRange(15, 30);
        show(points);
        QCOMPARE(shown(), expected);
    }
    void firstPointDefaultsLastPointEmpties_data()
    {
        QTest::addColumn<int>("min");
        QTest::addColumn<int>("dwell");
        QTest::newRow("range holds 15") << 15 << 15;
        QTest::newRow("range without 15 starts on its minimum") << 16 << 16;
    }
    void firstPointDefaultsLastPointEmpties()
    {
        QFETCH(int, min);
        QFETCH(int, dwell);
        m_view->GetEditModel()->SetDwellRange(min, 30);
        show({});
        QCOMPARE(m_view->GetEditModel()->SpeedEntries().size(), 40);
        QSignalSpy empty(m_view, &CCruiseTableEditView::SignalSetSaveIconsStatus);
        QCOMPARE(m_view->AddPoint().row(), 0);
        QCOMPARE(shown(), (Triples{{1, 30, dwell}}));
        QCOMPARE(empty.last().at(0).toBool(), false);
        // Deleting the only point empties the path and drops its drop-downs.
        QPointer<QWidget> combo = m_view->CellComboBox(0, 0);
        QVERIFY(!m_view->DeletePoint(0).isValid());
        QCOMPARE(empty.last().at(0).toBool(), true);
        QTRY_VERIFY(combo.isNull());
    }
    // Where the selected point stands decides which move buttons the panel offers.
    void moveFromEachPlace_data()
    {
        QTest::addColumn<Triples>("path");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("place");
        QTest::addColumn<bool>("up");
        QTest::addColumn<int>("newRow");
        QTest::addColumn<Triples>("after");
        const Triples three{{1, 10, 20}, {2, 20, 25}, {3, 30, 30}};
        using View = CCruiseTableEditView;
        QTest::newRow("no selection") << three << -1 << int(View::PlaceNone) << true << -1 << three;
        QTest::newRow("only point") << Triples{{1, 10, 20}} << 0 << int(View::PlaceOnly) << true << -1
                                    << Triples{{1, 10, 20}};
        QTest::newRow("first up changes nothing") << three << 0 << int(View::PlaceFirst) << true << -1 << three;
        QTest::newRow("middle up swaps values")
            << three << 1 << int(View::PlaceMiddle) << true << 0 << Triples{{2, 20, 25}, {1, 10, 20}, {3, 30, 30}};
        QTest::newRow("middle down") << three << 1 << int(View::PlaceMiddle) << false << 2
                                     << Triples{{1, 10, 20}, {3, 30, 30}, {2, 20, 25}};
        QTest::newRow("last down changes nothing") << three << 2 << int(View::PlaceLast) << false << -1 << three;
    }
    void moveFromEachPlace()
    {
        QFETCH(Triples, path);
        QFETCH(int, row);
        QFETCH(int, place);
        QFETCH(bool, up);
        QFETCH(int, newRow);
        QFETCH(Triples, after);
        show(path);
        QSignalSpy spy(m_view, &CCruiseTableEditView::SignalSetPresetControlIconsStatus);
        const QModelIndex index = m_view->GetEditModel()->index(row, 0);
        m_view->UpdatePlace(index);
        QCOMPARE(int(spy.last().at(0).value<CCruiseTableEditView::IndexPlace>()), place);
        const QModelIndex moved = up ? m_view->MoveUp(index) : m_view->MoveDown(index);
        QCOMPARE(moved.isValid() ? moved.row() : -1, newRow);
        QCOMPARE(shown(), after);
    }

private:
    // Shows a path over the presets Gate (1), 2, Yard (3), Virtual (4, virtual) and Kept (5, withheld).
    void show(const Triples &points, int type = 1)
    {
        ptz_plugin_protocol::GetCruiseRouteResponse route;
        for (const auto &t : points)
            route.points.push_back(CruisePoint{uint32_t(t.at(0)), t.at(1), t.at(2), {}});
        m_view->GetEditModel()->SetPresetType(type);
        m_view->SetPath(route, {Preset(1, 1, QStringLiteral("Gate")), Preset(2, 1, QString()),
                                Preset(3, 1, QStringLiteral("Yard")), Preset(4, 3, QStringLiteral("Virtual")),
                                Preset(5, 1, QStringLiteral("Kept"), 1)});
    }
    // What the drop-downs hold must be what the model saves.
    Triples shown() const
    {
        const Triples fromDropDowns = Read(m_view->GetPoints());
        if (Read(m_view->GetEditModel()->Points()) != fromDropDowns)
            return {{-1}};
        return fromDropDowns;
    }
    CCruiseTableEditView *m_view = nullptr;
};

QTEST_MAIN(TstCCruiseTableEditView)
#include "tst_ccruisetableeditview.moc"

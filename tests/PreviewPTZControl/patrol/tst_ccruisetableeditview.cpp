#include "patrol/ccruisetableeditmodel.h"
#include "patrol/ccruisetableeditview.h"

#include "quillon/citemdatarole.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QSignalSpy>
#include <QtTest>

using PreviewPTZControl::CCruiseComboBox;
using PreviewPTZControl::CCruiseTableEditModel;
using PreviewPTZControl::CCruiseTableEditView;
using ptz_plugin_protocol::CruisePoint;
using ptz_plugin_protocol::GetCruiseRouteResponse;
using ptz_plugin_protocol::PresetInfo;

using Triples = QVector<QVector<int>>; // preset, speed, dwell per point

namespace {
PresetInfo Preset(int number, int type, const char *name = "", int reserved = 0)
{
    PresetInfo p;
    p.preset_index = number;
    p.preset_type = type;
    p.preset_name = name;
    p.reserved = reserved;
    return p;
}

QVector<PresetInfo> Presets()
{
    return {Preset(1, 1, "Gate"), Preset(2, 1), Preset(3, 1, "Yard"), Preset(4, 3, "Virtual"),
            Preset(5, 1, "Kept", 1)};
}

GetCruiseRouteResponse Route(const Triples &points)
{
    GetCruiseRouteResponse route;
    for (const auto &t : points) {
        CruisePoint p;
        p.preset_index = uint32_t(t.at(0));
        p.speed = t.at(1);
        p.dwell_time = t.at(2);
        route.points.push_back(p);
    }
    return route;
}

Triples Read(const std::vector<CruisePoint> &points)
{
    Triples result;
    for (const CruisePoint &p : points)
        result << QVector<int>{int(p.preset_index), p.speed, p.dwell_time};
    return result;
}

QVector<int> Values(const CCruiseComboBox::Entries &entries)
{
    QVector<int> values;
    for (const auto &e : entries)
        values << e.second;
    return values;
}
} // namespace

class TstCCruiseTableEditView : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void headersAndSpeeds();
    void presetEntriesByTypeAndFlag_data();
    void presetEntriesByTypeAndFlag();
    void dwellRangeRebuilt_data();
    void dwellRangeRebuilt();
    void pointsReadBackSkipInvalid_data();
    void pointsReadBackSkipInvalid();
    void defaultPointValues_data();
    void defaultPointValues();
    void noPresetNoPoint();
    void place_data();
    void place();
    void moves_data();
    void moves();
    void deleteLastPointEmptiesPath();
    void missingPresetStaysVisible();
    void pointsFollowTheDropDowns();
    void modelTester();

private:
    void show(const Triples &points, int type = 1);
    CCruiseTableEditView *m_view = nullptr;
};

void TstCCruiseTableEditView::init()
{
    qRegisterMetaType<CCruiseTableEditView::IndexPlace>();
    m_view = new CCruiseTableEditView;
    m_view->resize(300, 400);
    m_view->show();
}

void TstCCruiseTableEditView::cleanup()
{
    delete m_view;
}

void TstCCruiseTableEditView::show(const Triples &points, int type)
{
    m_view->GetEditModel()->SetPresetType(type);
    m_view->SetPath(Route(points), Presets());
}

void TstCCruiseTableEditView::headersAndSpeeds()
{
    const CCruiseTableEditModel *model = m_view->GetEditModel();
    QCOMPARE(model->columnCount(), 3);
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Preset"));
    QCOMPARE(model->headerData(2, Qt::Horizontal, Qt::ToolTipRole).toString(), QStringLiteral("Time"));
    QCOMPARE(model->GetColumnWidth(0), 80);
    QCOMPARE(model->GetColumnWidth(1), 60);
    QCOMPARE(model->GetColumnWidth(2), 50);
    QCOMPARE(Values(model->SpeedEntries()).size(), 40);
    QCOMPARE(Values(model->SpeedEntries()).first(), 1);
    QCOMPARE(Values(model->SpeedEntries()).last(), 40);
    QCOMPARE(m_view->header()->objectName(), QStringLiteral("ptr_patrol_edit_view_header_"));
    QCOMPARE(m_view->GetEmptyViewText(), QStringLiteral("NoDataqrhgooag"));
    // The three columns share the width.
    const int third = m_view->viewport()->width() / 3;
    QCOMPARE(m_view->columnWidth(0), third);
    QCOMPARE(m_view->columnWidth(2), third);
}

void TstCCruiseTableEditView::presetEntriesByTypeAndFlag_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVector<int>>("values");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("device presets, the kept one withheld") << 1 << QVector<int>{1, 2, 3}
                                                           << QStringList{"Gate", "Preset2", "Yard"};
    QTest::newRow("virtual presets") << 3 << QVector<int>{4} << QStringList{"Virtual"};
    QTest::newRow("fish-eye: none") << 2 << QVector<int>{} << QStringList{};
}

void TstCCruiseTableEditView::presetEntriesByTypeAndFlag()
{
    QFETCH(int, type);
    QFETCH(QVector<int>, values);
    QFETCH(QStringList, texts);
    show({}, type);
    const auto &entries = m_view->GetEditModel()->PresetEntries();
    QCOMPARE(Values(entries), values);
    QStringList shown;
    for (const auto &e : entries)
        shown << e.first;
    QCOMPARE(shown, texts);
    QCOMPARE(m_view->GetEditModel()->HasPresets(), !values.isEmpty());
}

void TstCCruiseTableEditView::dwellRangeRebuilt_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::newRow("software patrol") << 2 << 30;
    QTest::newRow("virtual patrol") << 15 << 30;
    QTest::newRow("device reported") << 1 << 60;
}

void TstCCruiseTableEditView::dwellRangeRebuilt()
{
    QFETCH(int, min);
    QFETCH(int, max);
    CCruiseTableEditModel *model = m_view->GetEditModel();
    model->SetDwellRange(5, 6); // an earlier opening
    model->SetDwellRange(min, max);
    const QVector<int> values = Values(model->DwellEntries());
    QCOMPARE(values.size(), max - min + 1);
    QCOMPARE(values.first(), min);
    QCOMPARE(values.last(), max);
    show({{1, 10, max}});
    QCOMPARE(m_view->CellComboBox(0, 2)->count(), max - min + 1);
}

void TstCCruiseTableEditView::pointsReadBackSkipInvalid_data()
{
    QTest::addColumn<Triples>("points");
    QTest::addColumn<Triples>("shown");
    QTest::newRow("valid") << Triples{{1, 5, 20}, {3, 40, 30}} << Triples{{1, 5, 20}, {3, 40, 30}};
    QTest::newRow("preset 0") << Triples{{0, 5, 20}, {3, 40, 30}} << Triples{{3, 40, 30}};
    QTest::newRow("speed 0") << Triples{{1, 0, 20}, {3, 40, 30}} << Triples{{3, 40, 30}};
    QTest::newRow("dwell 0") << Triples{{1, 5, 0}, {3, 40, 30}} << Triples{{3, 40, 30}};
    // A value the drop-down does not offer falls back to its first entry.
    QTest::newRow("dwell outside the range") << Triples{{1, 5, 99}} << Triples{{1, 5, 15}};
}

void TstCCruiseTableEditView::pointsReadBackSkipInvalid()
{
    QFETCH(Triples, points);
    QFETCH(Triples, shown);
    m_view->GetEditModel()->SetDwellRange(15, 30);
    show(points);
    QCOMPARE(Read(m_view->GetPoints()), shown);
    QCOMPARE(Read(m_view->GetEditModel()->Points()), shown);
}

void TstCCruiseTableEditView::defaultPointValues_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("dwell");
    QTest::newRow("range holds 15") << 15 << 30 << 15;
    QTest::newRow("device range 1-30") << 1 << 30 << 15;
    QTest::newRow("range without 15 starts on its minimum") << 16 << 30 << 16;
}

void TstCCruiseTableEditView::defaultPointValues()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QFETCH(int, dwell);
    m_view->GetEditModel()->SetDwellRange(min, max);
    show({});
    QSignalSpy empty(m_view, &CCruiseTableEditView::SignalSetSaveIconsStatus);
    const QModelIndex added = m_view->AddPoint();
    QCOMPARE(added.row(), 0);
    QCOMPARE(Read(m_view->GetPoints()), (Triples{{1, 30, dwell}}));
    QVERIFY(!empty.isEmpty());
    QCOMPARE(empty.last().at(0).toBool(), false);
}

void TstCCruiseTableEditView::noPresetNoPoint()
{
    show({}, 2);
    QVERIFY(!m_view->AddPoint().isValid());
    QCOMPARE(m_view->GetEditModel()->PointCount(), 0);
}

void TstCCruiseTableEditView::place_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("place");
    QTest::newRow("no selection") << 3 << -1 << int(CCruiseTableEditView::PlaceNone);
    QTest::newRow("only point") << 1 << 0 << int(CCruiseTableEditView::PlaceOnly);
    QTest::newRow("first") << 3 << 0 << int(CCruiseTableEditView::PlaceFirst);
    QTest::newRow("middle") << 3 << 1 << int(CCruiseTableEditView::PlaceMiddle);
    QTest::newRow("last") << 3 << 2 << int(CCruiseTableEditView::PlaceLast);
}

void TstCCruiseTableEditView::place()
{
    QFETCH(int, count);
    QFETCH(int, row);
    QFETCH(int, place);
    show(Triples(count, {1, 10, 20}));
    QSignalSpy spy(m_view, &CCruiseTableEditView::SignalSetPresetControlIconsStatus);
    m_view->UpdatePlace(m_view->GetEditModel()->index(row, 0));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(int(spy.first().at(0).value<CCruiseTableEditView::IndexPlace>()), place);
}

void TstCCruiseTableEditView::moves_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("up");
    QTest::addColumn<int>("newRow");
    QTest::addColumn<Triples>("after");
    const Triples before{{1, 10, 20}, {2, 20, 25}, {3, 30, 30}};
    QTest::newRow("middle up swaps values") << 1 << true << 0 << Triples{{2, 20, 25}, {1, 10, 20}, {3, 30, 30}};
    QTest::newRow("middle down") << 1 << false << 2 << Triples{{1, 10, 20}, {3, 30, 30}, {2, 20, 25}};
    QTest::newRow("first up changes nothing") << 0 << true << -1 << before;
    QTest::newRow("last down changes nothing") << 2 << false << -1 << before;
}

void TstCCruiseTableEditView::moves()
{
    QFETCH(int, row);
    QFETCH(bool, up);
    QFETCH(int, newRow);
    QFETCH(Triples, after);
    show({{1, 10, 20}, {2, 20, 25}, {3, 30, 30}});
    const QModelIndex index = m_view->GetEditModel()->index(row, 0);
    const QModelIndex moved = up ? m_view->MoveUp(index) : m_view->MoveDown(index);
    QCOMPARE(moved.isValid() ? moved.row() : -1, newRow);
    QCOMPARE(Read(m_view->GetPoints()), after);
    QCOMPARE(Read(m_view->GetEditModel()->Points()), after);
}

void TstCCruiseTableEditView::deleteLastPointEmptiesPath()
{
    show({{1, 10, 20}});
    QSignalSpy empty(m_view, &CCruiseTableEditView::SignalSetSaveIconsStatus);
    QPointer<QWidget> combo = m_view->CellComboBox(0, 0);
    QVERIFY(!m_view->DeletePoint(0).isValid());
    QCOMPARE(m_view->GetEditModel()->PointCount(), 0);
    QCOMPARE(empty.last().at(0).toBool(), true);
    QTRY_VERIFY(combo.isNull());
}

void TstCCruiseTableEditView::missingPresetStaysVisible()
{
    // Preset 9 left the camera: the point shows it, marked, and keeps it unless changed.
    show({{1, 10, 20}, {9, 10, 20}});
    CCruiseComboBox *combo = m_view->CellComboBox(1, 0);
    QCOMPARE(combo->CurrentValue(), 9);
    QCOMPARE(combo->currentText(), QStringLiteral("PatrolPointPresetMissing9"));
    QCOMPARE(Read(m_view->GetPoints()).at(1).at(0), 9);
    // Moving it keeps what it stands for.
    m_view->MoveUp(m_view->GetEditModel()->index(1, 0));
    QCOMPARE(Read(m_view->GetPoints()).at(0).at(0), 9);
    QCOMPARE(Read(m_view->GetPoints()).at(1).at(0), 1);
}

void TstCCruiseTableEditView::pointsFollowTheDropDowns()
{
    show({{1, 10, 20}});
    m_view->CellComboBox(0, 0)->SetCurrentValue(3);
    m_view->CellComboBox(0, 1)->SetCurrentValue(7);
    m_view->CellComboBox(0, 2)->SetCurrentValue(29);
    QCOMPARE(Read(m_view->GetPoints()), (Triples{{3, 7, 29}}));
    QCOMPARE(Read(m_view->GetEditModel()->Points()), (Triples{{3, 7, 29}}));
}

void TstCCruiseTableEditView::modelTester()
{
    QAbstractItemModelTester tester(m_view->GetEditModel(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    show({{1, 10, 20}, {2, 20, 25}});
    m_view->AddPoint();
    m_view->DeletePoint(0);
    show({});
}

QTEST_MAIN(TstCCruiseTableEditView)
#include "tst_ccruisetableeditview.moc"

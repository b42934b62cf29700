#include "support/records.h"

#include "patrol/ccruisetableeditmodel.h"
#include "patrol/ccruisetableeditview.h"

#include <QAbstractItemModelTester>
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
    void cleanup() { delete m_view; }
    void presetEntriesByTypeAndFlag_data();
    void presetEntriesByTypeAndFlag();
    void dropDownRanges_data();
    void dropDownRanges();
    void pointsReadBackSkipInvalid_data();
    void pointsReadBackSkipInvalid();
    void defaultPointValues_data();
    void defaultPointValues();
    void place_data();
    void place();
    void moves_data();
    void moves();
    void deleteLastPointEmptiesPath();
    void missingPresetStaysVisible();
    void pointsFollowTheDropDowns();

private:
    // Shows a path over the presets Gate (1), 2, Yard (3), Virtual (4, virtual) and Kept (5, withheld).
    void show(const Triples &points, int type = 1);
    Triples shown() const;
    CCruiseTableEditView *m_view = nullptr;
};

void TstCCruiseTableEditView::init()
{
    qRegisterMetaType<CCruiseTableEditView::IndexPlace>();
    m_view = new CCruiseTableEditView;
    m_view->resize(300, 400);
    m_view->show();
}

void TstCCruiseTableEditView::show(const Triples &points, int type)
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
Triples TstCCruiseTableEditView::shown() const
{
    const Triples fromDropDowns = Read(m_view->GetPoints());
    if (Read(m_view->GetEditModel()->Points()) != fromDropDowns)
        return {{-1}};
    return fromDropDowns;
}

void TstCCruiseTableEditView::presetEntriesByTypeAndFlag_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVector<int>>("values");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("device presets, the kept one withheld")
        << 1 << QVector<int>{1, 2, 3} << QStringList{"Gate", "Preset2", "Yard"};
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
    QStringList names;
    for (const auto &e : entries)
        names << e.first;
    QCOMPARE(names, texts);
    // Without a preset of its kind the path gets no point.
    QCOMPARE(m_view->AddPoint().isValid(), !values.isEmpty());
}

void TstCCruiseTableEditView::dropDownRanges_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::newRow("software patrol") << 2 << 30;
    QTest::newRow("virtual patrol") << 15 << 30;
    QTest::newRow("device reported") << 1 << 60;
}

void TstCCruiseTableEditView::dropDownRanges()
{
    QFETCH(int, min);
    QFETCH(int, max);
    CCruiseTableEditModel *model = m_view->GetEditModel();
    model->SetDwellRange(5, 6); // an earlier opening
    model->SetDwellRange(min, max);
    const QVector<int> dwells = Values(model->DwellEntries());
    QCOMPARE(dwells.size(), max - min + 1);
    QCOMPARE(dwells.first(), min);
    QCOMPARE(dwells.last(), max);
    show({{1, 10, max}});
    QCOMPARE(m_view->CellComboBox(0, 2)->count(), max - min + 1);
    QCOMPARE(Values(model->SpeedEntries()), [] {
        QVector<int> speeds;
        for (int speed = 1; speed <= 40; ++speed)
            speeds << speed;
        return speeds;
    }());
}

void TstCCruiseTableEditView::pointsReadBackSkipInvalid_data()
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

void TstCCruiseTableEditView::pointsReadBackSkipInvalid()
{
    QFETCH(Triples, points);
    QFETCH(Triples, expected);
    m_view->GetEditModel()->SetDwellRange(15, 30);
    show(points);
    QCOMPARE(shown(), expected);
}

void TstCCruiseTableEditView::defaultPointValues_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("dwell");
    QTest::newRow("range holds 15") << 15 << 15;
    QTest::newRow("device range 1-30") << 1 << 15;
    QTest::newRow("range without 15 starts on its minimum") << 16 << 16;
}

void TstCCruiseTableEditView::defaultPointValues()
{
    QFETCH(int, min);
    QFETCH(int, dwell);
    m_view->GetEditModel()->SetDwellRange(min, 30);
    show({});
    QSignalSpy empty(m_view, &CCruiseTableEditView::SignalSetSaveIconsStatus);
    QCOMPARE(m_view->AddPoint().row(), 0);
    QCOMPARE(shown(), (Triples{{1, 30, dwell}}));
    QCOMPARE(empty.last().at(0).toBool(), false);
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
    QAbstractItemModelTester tester(m_view->GetEditModel(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    show({{1, 10, 20}, {2, 20, 25}, {3, 30, 30}});
    const QModelIndex index = m_view->GetEditModel()->index(row, 0);
    const QModelIndex moved = up ? m_view->MoveUp(index) : m_view->MoveDown(index);
    QCOMPARE(moved.isValid() ? moved.row() : -1, newRow);
    QCOMPARE(shown(), after);
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
    // Preset 9 left the camera: the point shows it, marked, and keeps it unless changed, also when moved.
    show({{1, 10, 20}, {9, 10, 20}});
    CCruiseComboBox *combo = m_view->CellComboBox(1, 0);
    QCOMPARE(combo->CurrentValue(), 9);
    QCOMPARE(combo->currentText(), QStringLiteral("PatrolPointPresetMissing9"));
    m_view->MoveUp(m_view->GetEditModel()->index(1, 0));
    QCOMPARE(shown(), (Triples{{9, 10, 20}, {1, 10, 20}}));
}

void TstCCruiseTableEditView::pointsFollowTheDropDowns()
{
    show({{1, 10, 20}});
    m_view->CellComboBox(0, 0)->SetCurrentValue(3);
    m_view->CellComboBox(0, 1)->SetCurrentValue(7);
    m_view->CellComboBox(0, 2)->SetCurrentValue(29);
    QCOMPARE(shown(), (Triples{{3, 7, 29}}));
}

QTEST_MAIN(TstCCruiseTableEditView)
#include "tst_ccruisetableeditview.moc"

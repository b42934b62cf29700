#pragma once

#include "quillon/quillon_export.h"

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QVariant>
#include <QVector>

namespace Quillon {

// Binds properties of objects to numbered data roles: setting a role's value
// writes it to every property mapped to that role. Used to switch pages by
// mapping their "visible" property to one role each.
class QUILLON_EXPORT CDataObjectMapper : public QObject
{
    Q_OBJECT
public:
    explicit CDataObjectMapper(QObject *parent = nullptr);
    ~CDataObjectMapper() override;

    void AddMapping(QObject *object, int role, const QByteArray &propertyName = QByteArrayLiteral("visible"));
    void RemoveMapping(QObject *object);
    void ClearMapping();
    // Objects mapped to role, in mapping order (destroyed ones are gone).
    QVector<QObject *> GetMappedObjects(int role) const;

    // Stores the value and writes it to the mapped properties.
    void SetData(int role, const QVariant &value);
    // Several roles at once; roles whose value hides something (false) go first,
    // so a page switch never shows two pages at the same time.
    void SetData(const QMap<int, QVariant> &values);
    QVariant GetData(int role) const;

signals:
    void SignalDataChanged(int role, const QVariant &value);

private:
    struct Mapping
    {
        QPointer<QObject> object;
        int role;
        QByteArray property;
    };
    void Write(int role, const QVariant &value);

    QVector<Mapping> m_mappings;
    QMap<int, QVariant> m_data;
};

} // namespace Quillon

#pragma once

#include "quillon/quillon_export.h"

#include <QLineEdit>

class QLabel;

namespace Quillon {

// Line edit with a fixed text (a unit, "seconds") shown inside its right edge.
// The fixed text is not part of text(); typing never reaches under it.
class QUILLON_EXPORT CFixedContentLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    explicit CFixedContentLineEdit(QWidget *parent = nullptr);
    ~CFixedContentLineEdit() override;

    void SetFixedContent(const QString &content);
    QString GetFixedContent() const;
    QLabel *GetFixedContentLabel() const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void UpdateFixedContentGeometry();

    QLabel *m_label = nullptr;
};

} // namespace Quillon

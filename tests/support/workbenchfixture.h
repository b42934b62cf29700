#pragma once

#include "support/records.h"
#include "support/testenv.h"

#include "cworkbenchwindow.h"

#include <QStringList>

#include <memory>

// A workbench window (four screens) on a fresh test site. Call setUp() in init() and
// tearDown() in cleanup().
class WorkbenchFixture : public TestEnv
{
public:
    void setUp();
    void tearDown();
    CWorkbenchWindow *window() const { return m_window.get(); }
    // Shows the window at its default size and makes it the active one.
    bool showActive();
    // Another window takes the activation, as when the operator switches to another program.
    bool switchAway();
    // Cameras of the window's screens that are moving (pan/tilt or zoom).
    QStringList moving() const;

private:
    std::unique_ptr<CWorkbenchWindow> m_window;
    std::unique_ptr<QWidget> m_other;
};

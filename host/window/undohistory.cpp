// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/undohistory.h"

#include "host/window/session.h"

#include <QUndoCommand>

namespace {

const int maxSteps = 200;

/// One step. It copies all values before and after it: they are small, and this fits every kind of
/// step.
class ValuesCommand : public QUndoCommand
{
public:
    ValuesCommand(Session *imageSession, const QString &text, const Snapshot &snapshotBefore,
                  const Snapshot &snapshotAfter)
        : QUndoCommand(text)
        , session(imageSession)
        , before(snapshotBefore)
        , after(snapshotAfter)
    {
    }

    void undo() override
    {
        session->restore(before);
    }

    void redo() override
    {
        // The stack also calls this for a new step, which has already been done.
        if (std::exchange(isNew, false)) {
            return;
        }
        session->restore(after);
    }

private:
    Session *session;
    Snapshot before;
    Snapshot after;
    bool isNew = true;
};

} // namespace

UndoHistory::UndoHistory(Session *imageSession, QObject *parent)
    : QUndoStack(parent)
{
    setUndoLimit(maxSteps);
    connect(
        imageSession, &Session::valuesChanged, this,
        [this, imageSession](const QString &text, const Snapshot &before, const Snapshot &after) {
            push(new ValuesCommand(imageSession, text, before, after));
        });
    connect(imageSession, &Session::projectOpened, this, &QUndoStack::clear);
}

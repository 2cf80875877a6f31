// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

namespace tool
{

/// A text in a private file that the user changes with an editor: $VISUAL, else $EDITOR, else vi. The destructor
/// removes the file and everything that the editor leaves beside it.
class Editor
{
public:
    Editor();

    [[nodiscard]] QString path() const { return m_path; }
    /// Each returns the error; empty on success.
    [[nodiscard]] QString write(const QByteArray &text) const;
    [[nodiscard]] QString read(QByteArray &text) const;
    /// Runs the editor and waits until it ends. Meanwhile this process ignores Ctrl-C.
    [[nodiscard]] QString run() const;

private:
    const QTemporaryDir m_folder;
    const QString m_path;
};

} // namespace tool

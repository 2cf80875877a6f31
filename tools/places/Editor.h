// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

namespace tool
{

/// A text in a private file that the user changes with the editor of the environment: $VISUAL, $EDITOR, or else vi. The
/// file, and what the editor leaves beside it, are gone with the object.
class Editor
{
public:
    Editor();

    [[nodiscard]] QString path() const { return m_path; }
    /// Each returns what went wrong; empty when nothing did.
    [[nodiscard]] QString write(const QByteArray &text) const;
    [[nodiscard]] QString read(QByteArray &text) const;
    /// Runs the editor and waits until it ends. Ctrl-C is for the editor meanwhile.
    [[nodiscard]] QString run() const;

private:
    const QTemporaryDir m_folder;
    const QString m_path;
};

} // namespace tool

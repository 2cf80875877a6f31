// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Backup.h"

#include "Interruption.h"

#include <places/InternalPlaceManager.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <unistd.h>

namespace tool
{

using namespace places;

namespace
{

const QString STREAM = QStringLiteral("-");
constexpr qint64 PIECE = 256 * 1024;

using CopyStore = Error::Type (InternalPlaceManager::*)(const QString &) const;

/// The service may have another working folder, so it gets an absolute path.
ExitStatus copyStore(const QString &file, const char *command, CopyStore copy)
{
    const QString path = QFileInfo(file).absoluteFilePath();
    const Error::Type error = (InternalPlaceManager().*copy)(path);
    const QString reason = Error::reason(error);
    return report(error, reason.contains(path) ? QString::fromLatin1(command) : path, reason);
}

/// Copies the rest of one file to the other. Returns the error; empty on success.
QString copyFile(QFile &from, QFile &to)
{
    QByteArray piece;
    do {
        piece = from.read(PIECE);
        if (to.write(piece) != piece.size())
            return to.errorString();
    } while (!piece.isEmpty() && Interruption::signal() == 0);
    if (from.error() != QFile::NoError)
        return from.errorString();
    return to.flush() ? QString() : to.errorString();
}

/// Runs `copy` with a private file between a stream and the service. The file is removed afterwards, even after a
/// signal.
/// @param copy gets the folder and the path of the file.
template <typename Copy>
ExitStatus withPrivateFile(const char *command, Copy copy)
{
    const Interruption interruption;
    QTemporaryDir folder;
    if (!folder.isValid())
        return fail(QLatin1String(command), folder.errorString());
    const ExitStatus status = copy(folder, folder.filePath(QStringLiteral("places.db")));
    return Interruption::signal() == 0 ? status : static_cast<ExitStatus>(Interrupted + Interruption::signal());
}

ExitStatus reportCopy(const char *command, const QString &problem)
{
    return problem.isEmpty() ? Done : fail(QLatin1String(command), problem);
}

} // namespace

ExitStatus backUp(const QString &path)
{
    if (path != STREAM)
        return copyStore(path, "backup", &InternalPlaceManager::backup);
    if (::isatty(STDOUT_FILENO) != 0)
        return misuse("backup", QStringLiteral("a backup is not written to a terminal; name a file"));
    return withPrivateFile("backup", [](QTemporaryDir &folder, const QString &file) {
        if (const ExitStatus status = copyStore(file, "backup", &InternalPlaceManager::backup); status != Done)
            return status;
        QFile from(file);
        QFile to;
        const bool isOpen = from.open(QIODevice::ReadOnly) && to.open(stdout, QIODevice::WriteOnly);
        folder.remove(); // SIGPIPE may end this process while it writes
        return reportCopy("backup", isOpen ? copyFile(from, to) : from.errorString());
    });
}

ExitStatus restore(const QString &path)
{
    if (path != STREAM)
        return copyStore(path, "restore", &InternalPlaceManager::restore);
    return withPrivateFile("restore", [](QTemporaryDir &, const QString &file) {
        QFile from;
        QFile to(file);
        const bool isOpen = from.open(stdin, QIODevice::ReadOnly) && to.open(QIODevice::WriteOnly);
        const ExitStatus status = reportCopy("restore", isOpen ? copyFile(from, to) : to.errorString());
        to.close();
        const bool isWhole = status == Done && Interruption::signal() == 0;
        return isWhole ? copyStore(file, "restore", &InternalPlaceManager::restore) : status;
    });
}

} // namespace tool

// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

// Searches while the user types: each line of standard input replaces the previous search, and each group is printed
// when it is found. Replaced searches are not reported.

#include <places/AbstractPlace.h>
#include <places/SearchManager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>

#include <iostream>
#include <unistd.h>

using namespace vela::platform::places;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    SearchManager manager;
    QByteArray typed;
    int searchId = 0;
    bool isSearching = false;
    bool isAtEnd = false;
    bool hasFailed = false;

    const auto print = [&](Error::Type error, const SearchResult &result, bool isLast) {
        std::cout << (result.source() == SearchResultGroup::Local ? "Your places" : "Suggestions");
        if (error != Error::Success)
            std::cout << ": " << qUtf8Printable(errorString(error));
        const auto found = result.result();
        for (const auto &place : found)
            std::cout << "\n  " << qUtf8Printable(place->name()) << " - " << qUtf8Printable(place->primaryLocation());
        std::cout << std::endl;
        hasFailed = hasFailed || error != Error::Success;
        isSearching = !isLast;
        if (isAtEnd && isLast)
            QCoreApplication::exit(hasFailed);
    };
    QObject::connect(&manager, &SearchManager::resultAvailable, &manager, print);

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
        char bytes[4096];
        const auto count = read(STDIN_FILENO, bytes, sizeof bytes);
        isAtEnd = count <= 0;
        input.setEnabled(!isAtEnd);
        typed += isAtEnd ? QByteArray(typed.isEmpty() ? "" : "\n") : QByteArray(bytes, static_cast<int>(count));
        for (int end = typed.indexOf('\n'); end >= 0; end = typed.indexOf('\n')) {
            std::cout << "> " << typed.left(end).constData() << std::endl;
            manager.search(QString::fromUtf8(typed.left(end)), Coordinates(), ++searchId);
            typed.remove(0, end + 1);
            isSearching = true;
        }
        if (isAtEnd && !isSearching)
            QCoreApplication::exit(hasFailed);
    });
    return QCoreApplication::exec();
}

// tessik-bench [--json FILE] [NAME…]: measures all figures or those named, a line each.
#include "Bench.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>
#include <vector>

namespace tessik::bench {
namespace {

struct Entry {
    std::string name;
    std::function<void(const Report&)> run;
};

std::vector<Entry>& entries() {
    static std::vector<Entry> list;
    return list;
}

int run(const QStringList& arguments) {
    const QCommandLineOption toFile(QStringLiteral("json"), QStringLiteral("Write the figures to FILE too."),
                                    QStringLiteral("FILE"));
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption(toFile);
    parser.addPositionalArgument(QStringLiteral("NAME"), QStringLiteral("A figure; all of them if none is named."),
                                 QStringLiteral("[NAME…]"));
    if (!parser.parse(arguments))
        return std::fprintf(stderr, "tessik-bench: %s\n", qUtf8Printable(parser.errorText())), 2;
    if (parser.isSet(QStringLiteral("help"))) parser.showHelp();
    const QString jsonFile = parser.value(toFile);
    const QStringList names = parser.positionalArguments();
    for (const QString& name : names) {
        const bool known = std::any_of(entries().begin(), entries().end(),
                                       [&](const Entry& entry) { return name == QString::fromStdString(entry.name); });
        if (!known) return std::fprintf(stderr, "tessik-bench: no figure %s\n", qUtf8Printable(name)), 2;
    }
    QJsonObject json;
    bool allMet = true;
    const Report report = [&](const Figure& figure) {
        const bool met = !figure.goal || figure.value <= *figure.goal;
        allMet = allMet && met;
        std::printf("%-48s %12.3f %-6s", figure.name.c_str(), figure.value, figure.unit.c_str());
        if (figure.goal) std::printf(" goal %10.3f  %s", *figure.goal, met ? "met" : "NOT MET");
        std::printf("\n");
        std::fflush(stdout);
        json[QString::fromStdString(figure.name)] =
            QJsonObject{{QStringLiteral("value"), figure.value},
                        {QStringLiteral("unit"), QString::fromStdString(figure.unit)},
                        {QStringLiteral("goal"), figure.goal ? QJsonValue(*figure.goal) : QJsonValue()}};
    };
    for (const Entry& entry : entries())
        if (names.isEmpty() || names.contains(QString::fromStdString(entry.name))) entry.run(report);
    if (!jsonFile.isEmpty()) {
        QFile file(jsonFile);
        const QByteArray text = QJsonDocument(json).toJson();
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush())
            return std::fprintf(stderr, "tessik-bench: cannot write %s: %s\n", qUtf8Printable(jsonFile),
                                qUtf8Printable(file.errorString())),
                   1;
    }
    return allMet ? 0 : 1;
}

} // namespace

Benchmark::Benchmark(std::string name, std::function<void(const Report&)> run) {
    entries().push_back({std::move(name), std::move(run)});
}

} // namespace tessik::bench

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    QApplication app(argc, argv);
    return tessik::bench::run(QApplication::arguments());
}

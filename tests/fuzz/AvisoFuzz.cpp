#include "core/Motor.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

/// The first line is what the engine said; what follows stands in the file that the line may name by the word "aqui".
/// A line that names any other file is left out: reading a notice removes the file.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t largo)
{
    static const QTemporaryDir carpeta;
    const auto todo = QByteArray::fromRawData(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(largo));
    const auto corte = todo.indexOf('\n');
    auto linea = corte < 0 ? todo : todo.left(corte);
    const auto nombrado = QJsonDocument::fromJson(linea)["fichero_datos"_L1].toString();
    if (nombrado == "aqui"_L1) {
        QFile fichero(carpeta.filePath(u"datos.json"_s));
        if (!fichero.open(QIODevice::WriteOnly))
            __builtin_trap();
        fichero.write(corte < 0 ? QByteArray() : todo.mid(corte + 1));
        linea.replace("\"aqui\"", '"' + fichero.fileName().toUtf8() + '"');
    } else if (!nombrado.isEmpty()) {
        return 0;
    }
    if (QJsonDocument::fromJson(linea)["fichero_datos"_L1].toString(carpeta.path()).startsWith(carpeta.path()) &&
        linea.size() < 100'000) {
        if (const auto aviso = vellora::Motor::interpretar(QString::fromUtf8(linea))) {
            const auto claves = aviso->datos.keys();
            for (const auto &clave : claves) {
                const auto latina = clave.toLatin1();
                static_cast<void>(aviso->entero(QLatin1StringView(latina)));
                static_cast<void>(aviso->texto(QLatin1StringView(latina)));
            }
        }
    }
    return 0;
}

#include "extraction/Textos.h"

#include "core/CarpetaDeDestino.h"
#include "extraction/Aguja.h"
#include "extraction/Renglones.h"

#include <QFile>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr qsizetype trozo = 1 << 18;
constexpr qsizetype lineaLarga = 1 << 20;
// Enough for the longest excerpt, whatever its letters are made of.
constexpr qsizetype principioDeLinea = 8192;

/// Only what stays as it is while it is read: a pipe under the name of a text would never end.
Descriptor abrirFichero(const QString &ruta)
{
    Descriptor fichero(open(QFile::encodeName(ruta).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat ficha = {};
    const bool sirve = fichero && fstat(*fichero, &ficha) == 0 && S_ISREG(ficha.st_mode);
    return sirve ? std::move(fichero) : Descriptor();
}

} // namespace

QStringList ficherosDeTexto(const QString &carpeta)
{
    QStringList ficheros;
    std::error_code fallo;
    // Unlike Qt's listing it asks nothing of the files that the folder itself tells.
    for (std::filesystem::directory_iterator fichero(QFile::encodeName(carpeta).toStdString(), fallo), fin;
         !fallo && fichero != fin; fichero.increment(fallo)) {
        const auto nombre = QFile::decodeName(fichero->path().filename().c_str());
        std::error_code ninguno;
        if (nombre.endsWith(u".txt"_s) && fichero->is_regular_file(ninguno))
            ficheros << carpeta + u'/' + nombre;
    }
    std::sort(ficheros.begin(), ficheros.end());
    return ficheros;
}

QString nombreDeChat(const QString &fichero)
{
    const auto nombre = fichero.section(u'/', -1);
    return nombre.endsWith(u".txt"_s) ? nombre.chopped(4) : nombre;
}

QString recortar(const QString &texto, int letras)
{
    if (texto.size() <= letras)
        return texto;
    QTextBoundaryFinder limites(QTextBoundaryFinder::Grapheme, texto);
    qsizetype fin = 0;
    for (int i = 0; i < letras; ++i) {
        fin = limites.toNextBoundary();
        if (fin < 0)
            return texto;
    }
    return texto.first(fin);
}

void porCadaLinea(const QString &fichero, const std::function<bool(QByteArrayView linea)> &linea)
{
    QFile entrada(fichero);
    const auto descriptor = abrirFichero(fichero);
    if (!descriptor || !entrada.open(*descriptor, QIODevice::ReadOnly))
        return;
    while (!entrada.atEnd()) {
        auto una = entrada.readLine(lineaLarga);
        const bool entera = una.endsWith('\n');
        if (entera)
            una.chop(1);
        if (!una.isEmpty() && !linea(una))
            return;
        while (!entera && !entrada.atEnd() && !entrada.readLine(lineaLarga).endsWith('\n'))
            ; // the rest of a line without end
    }
}

PrimeraLinea::PrimeraLinea(const Aguja &laAguja)
    : aguja(laAguja), bytes(trozo + principioDeLinea + laAguja.maximoDeBytes() + 1, Qt::Uninitialized)
{
}

/// Keeps what the next piece may go on with: the line that has not ended, or of a long one its beginning, for the
/// excerpt, and its end, where the needle may have begun.
void PrimeraLinea::guardarPendiente(qsizetype lleno)
{
    const auto *salto = static_cast<const char *>(memrchr(bytes.constData(), '\n', static_cast<std::size_t>(lleno)));
    const auto principio = salto == nullptr ? 0 : salto - bytes.constData() + 1;
    const auto largo = lleno - principio;
    std::memmove(bytes.data(), bytes.constData() + principio, static_cast<std::size_t>(largo));
    pendientes = largo;
    const auto cola = aguja.maximoDeBytes();
    if (largo <= principioDeLinea + cola)
        return;
    // A byte that no text has keeps the two halves from meeting.
    constexpr char separador = '\xff';
    bytes[principioDeLinea] = separador;
    std::memmove(bytes.data() + principioDeLinea + 1, bytes.constData() + largo - cola, static_cast<std::size_t>(cola));
    pendientes = principioDeLinea + 1 + cola;
}

std::optional<QString> PrimeraLinea::en(const QString &fichero)
{
    const auto entrada = abrirFichero(fichero);
    if (!entrada)
        return {};
    pendientes = 0;
    for (bool acabado = false;;) {
        const auto sitio = bytes.size() - pendientes;
        const auto leidos = acabado ? 0 : read(*entrada, bytes.data() + pendientes, static_cast<std::size_t>(sitio));
        if (leidos <= 0)
            return {};
        acabado = leidos < sitio; // of a file on a disk, less than was asked for is the end
        const auto lleno = pendientes + leidos;
        const auto hallado = aguja.en(QByteArrayView(bytes.constData(), lleno));
        if (hallado < 0) {
            guardarPendiente(lleno);
            continue;
        }
        return lineaDe(*entrada, hallado, lleno);
    }
}

/// The line around a match; when it goes on beyond the piece, as much more of it is read as an excerpt may need.
QString PrimeraLinea::lineaDe(int entrada, qsizetype hallado, qsizetype lleno)
{
    const auto principio = bytes.lastIndexOf('\n', hallado) + 1;
    auto largo = lleno - principio;
    std::memmove(bytes.data(), bytes.constData() + principio, static_cast<std::size_t>(largo));
    const auto fin = [this](qsizetype hasta) {
        const auto *salto = static_cast<const char *>(memchr(bytes.constData(), '\n', static_cast<std::size_t>(hasta)));
        return salto == nullptr ? -1 : salto - bytes.constData();
    };
    while (largo < principioDeLinea && fin(largo) < 0) {
        const auto leidos = read(entrada, bytes.data() + largo, static_cast<std::size_t>(principioDeLinea - largo));
        if (leidos <= 0)
            break;
        largo += leidos;
    }
    largo = std::min(largo, principioDeLinea);
    const auto salto = fin(largo);
    return QString::fromUtf8(Renglones::sinSangria(QByteArrayView(bytes.constData(), salto < 0 ? largo : salto)));
}

} // namespace vellora

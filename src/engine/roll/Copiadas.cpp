#include "engine/roll/Copiadas.h"

#include <QFile>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <fts.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// Dates of a disk from another system are as coarse as that (FAT).
constexpr qint64 toleranciaDeFecha = 2000;

qint64 modificadoDe(const FicheroDelCarrete &fichero)
{
    return fichero.ficha.modificado.toMSecsSinceEpoch();
}

qint64 milisegundos(const timespec &momento)
{
    return momento.tv_sec * 1000LL + momento.tv_nsec / 1'000'000;
}

QByteArray nombreDe(const QByteArray &relativa)
{
    return relativa.sliced(relativa.lastIndexOf('/') + 1);
}

/// Names with what parts a line are not noted: their content is looked at each time.
bool cabeEnUnaLinea(const QByteArray &relativa)
{
    return !relativa.contains('\t') && !relativa.contains('\n');
}

} // namespace

Copiadas::Copiadas(QString laCarpeta, const QString &udid)
    : carpeta(std::move(laCarpeta)), notas(carpeta + u'/' + nombreDeNotas(udid))
{
}

Copiadas Copiadas::leer(const QString &carpeta, const QString &udid)
{
    Copiadas copiadas(carpeta, udid);
    copiadas.leerCarpeta();
    copiadas.leerNotas();
    return copiadas;
}

void Copiadas::leerCarpeta()
{
    auto nombre = QFile::encodeName(carpeta);
    while (nombre.size() > 1 && nombre.endsWith('/'))
        nombre.chop(1);
    const std::array<char *, 2> raices{nombre.data(), nullptr};
    const auto cerrar = [](FTS *recorrido) {
        fts_close(recorrido);
    };
    // The folder itself may be a link; none below it is followed, nor another volume entered: it might be the phone's.
    const std::unique_ptr<FTS, decltype(cerrar)> recorrido(
        fts_open(raices.data(), FTS_PHYSICAL | FTS_COMFOLLOW | FTS_NOCHDIR | FTS_XDEV, nullptr), cerrar);
    while (auto *entrada = recorrido ? fts_read(recorrido.get()) : nullptr) {
        if (entrada->fts_level > 0 && entrada->fts_name[0] == '.') {
            fts_set(recorrido.get(), entrada, FTS_SKIP);
            continue;
        }
        if (entrada->fts_info != FTS_F || !S_ISREG(entrada->fts_statp->st_mode))
            continue;
        const QByteArray relativa(entrada->fts_path + nombre.size() + 1);
        porNombre[nombreDe(relativa)].push_back(
            {relativa, entrada->fts_statp->st_size, milisegundos(entrada->fts_statp->st_mtim)});
    }
}

void Copiadas::leerNotas()
{
    QFile fichero(notas);
    if (!fichero.open(QIODevice::ReadOnly))
        return;
    while (!fichero.atEnd()) {
        auto linea = fichero.readLine();
        // A line that was cut off by the end of the machine is none.
        if (!linea.endsWith('\n'))
            break;
        linea.chop(1);
        const auto partes = linea.split('\t');
        bool esTamano = false;
        bool esFecha = false;
        if (partes.size() != 5 || partes[0].size() != 64)
            continue;
        const Nota nota{QByteArray::fromHex(partes[0]), partes[4], partes[1].toLongLong(&esTamano),
                        partes[2].toLongLong(&esFecha)};
        if (esTamano && esFecha && CarpetaDeDestino::esSegura(nota.relativa))
            anotadas[partes[3]] = nota;
    }
}

const Copiadas::Nota *Copiadas::nota(const FicheroDelCarrete &fichero) const
{
    const auto hallada = anotadas.constFind(fichero.relativa);
    const bool vale = hallada != anotadas.cend() && hallada->tamano == fichero.ficha.tamano &&
                      hallada->modificado == modificadoDe(fichero);
    return vale ? &*hallada : nullptr;
}

Copiadas::Copia Copiadas::juzgar(const FicheroDelCarrete &fichero) const
{
    const auto *suya = nota(fichero);
    const auto hallados = porNombre.constFind(nombreDe(suya != nullptr ? suya->relativa : fichero.relativa));
    if (hallados == porNombre.cend())
        return {};
    Copia mejor;
    for (const auto &local : *hallados) {
        if (local.tamano != fichero.ficha.tamano)
            continue;
        const bool esLaAnotada = suya != nullptr && local.relativa == suya->relativa;
        if (esLaAnotada || std::abs(local.modificado - modificadoDe(fichero)) <= toleranciaDeFecha)
            return {Juicio::Esta, local.relativa};
        if (mejor.juicio == Juicio::Falta || local.relativa == fichero.relativa)
            mejor = {Juicio::QuizaEste, local.relativa};
    }
    return mejor;
}

std::optional<QByteArray> Copiadas::huella(const FicheroDelCarrete &fichero) const
{
    const auto *suya = nota(fichero);
    return suya != nullptr ? std::optional(suya->huella) : std::nullopt;
}

bool Copiadas::anotar(const FicheroDelCarrete &fichero, const QByteArray &relativa, const QByteArray &huella)
{
    if (!cabeEnUnaLinea(fichero.relativa) || !cabeEnUnaLinea(relativa))
        return true;
    QByteArray linea = huella.toHex();
    for (const auto &parte : {QByteArray::number(fichero.ficha.tamano), QByteArray::number(modificadoDe(fichero)),
                              fichero.relativa, relativa})
        linea += '\t' + parte;
    linea += '\n';
    const std::lock_guard cerrojo(*mutex);
    if (!abierta) {
        abierta = Descriptor(open(QFile::encodeName(notas).constData(),
                                  O_RDWR | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
        // The rest of a line that was cut off becomes a line of its own, which says nothing.
        char ultima = '\n';
        const auto largo = abierta ? lseek(*abierta, 0, SEEK_END) : 0;
        if (largo > 0 && pread(*abierta, &ultima, 1, largo - 1) == 1 && ultima != '\n')
            linea.prepend('\n');
    }
    if (abierta && write(*abierta, linea.constData(), static_cast<size_t>(linea.size())) == linea.size())
        return true;
    abierta = Descriptor(); // half a line may stand at its end now
    return false;
}

} // namespace vellora::motor

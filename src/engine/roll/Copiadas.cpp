#include "engine/roll/Copiadas.h"

#include "engine/roll/Huella.h"

#include <QFile>
#include <QTimeZone>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <fts.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// Dates of a disk from another system are as coarse as that (FAT).
constexpr qint64 toleranciaDeFecha = 2000;

qint64 nanosegundos(const timespec &momento)
{
    return momento.tv_sec * 1'000'000'000LL + momento.tv_nsec;
}

qint64 milisegundos(const timespec &momento)
{
    return momento.tv_sec * 1000LL + momento.tv_nsec / 1'000'000;
}

QByteArray nombreDe(const QByteArray &relativa)
{
    return relativa.sliced(relativa.lastIndexOf('/') + 1);
}

/// What a note is of: the place in the roll, and for what stands elsewhere in the phone its path there, since an edit
/// may come to the place of another file.
QByteArray claveDe(const FicheroDelCarrete &fichero)
{
    return fichero.ruta.startsWith("/DCIM/"_L1) ? fichero.relativa : bytesDeRuta(fichero.ruta);
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
        porNombre[nombreDe(relativa)].push_back({relativa, entrada->fts_statp->st_size,
                                                 milisegundos(entrada->fts_statp->st_mtim),
                                                 nanosegundos(entrada->fts_statp->st_ctim)});
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
        leerNota(linea.split('\t'));
    }
}

void Copiadas::leerNota(const QList<QByteArray> &partes)
{
    constexpr qsizetype deAntes = 5;
    constexpr qsizetype deAhora = 11;
    if ((partes.size() != deAntes && partes.size() != deAhora) || partes[0].size() != 2 * Huella::largo)
        return;
    bool bien = true;
    const auto numero = [&](qsizetype cual) {
        bool es = false;
        const auto valor = partes[cual].toLongLong(&es);
        bien = bien && es;
        return valor;
    };
    Nota nota;
    nota.huella = QByteArray::fromHex(partes[0]);
    nota.relativa = partes[4];
    nota.ficha.tamano = numero(1);
    nota.ficha.modificado = QDateTime::fromMSecsSinceEpoch(numero(2), QTimeZone::utc());
    if (partes.size() == deAhora) {
        nota.momento = numero(5);
        nota.ficha.modificacion = numero(6);
        nota.ficha.nacimiento = numero(7);
        nota.ficha.bloques = numero(8);
        nota.ficha.enlaces = numero(9);
        nota.cambio = numero(10);
    }
    nota.ficha.tipo = FichaAfc::Tipo::Fichero;
    if (!bien)
        return;
    if (nota.relativa.isEmpty())
        anotadas.remove(partes[3]);
    else if (CarpetaDeDestino::esSegura(nota.relativa))
        anotadas[partes[3]] = nota;
}

const Copiadas::Nota *Copiadas::nota(const FicheroDelCarrete &fichero) const
{
    const auto hallada = anotadas.constFind(claveDe(fichero));
    if (hallada == anotadas.cend() || hallada->ficha.tamano != fichero.ficha.tamano ||
        hallada->ficha.modificado.toMSecsSinceEpoch() != fichero.ficha.modificado.toMSecsSinceEpoch())
        return nullptr;
    // Of the same size and date, but written anew by the phone.
    const bool esOtro = hallada->momento != 0 && hallada->ficha != fichero.ficha;
    return esOtro ? nullptr : &*hallada;
}

bool Copiadas::estaIntacta(const Nota &suya) const
{
    const auto hallados = porNombre.constFind(nombreDe(suya.relativa));
    if (hallados == porNombre.cend())
        return false;
    return std::any_of(hallados->begin(), hallados->end(), [&](const Local &local) {
        if (local.relativa != suya.relativa || local.tamano != suya.ficha.tamano)
            return false;
        return suya.cambio != 0
                   ? local.cambio == suya.cambio
                   : std::abs(local.modificado - suya.ficha.modificado.toMSecsSinceEpoch()) <= toleranciaDeFecha;
    });
}

Copiadas::Copia Copiadas::juzgar(const FicheroDelCarrete &fichero) const
{
    const auto *suya = nota(fichero);
    if (suya != nullptr && estaIntacta(*suya))
        return {Juicio::Esta, suya->relativa};
    const auto posibles = candidatas(fichero);
    return posibles.isEmpty() ? Copia() : Copia{Juicio::QuizaEste, posibles.front()};
}

QByteArrayList Copiadas::candidatas(const FicheroDelCarrete &fichero) const
{
    const auto *suya = nota(fichero);
    // The copy may be noted under another name, and that note be of no use.
    QByteArrayList nombres{nombreDe(fichero.relativa)};
    if (suya != nullptr && nombreDe(suya->relativa) != nombres.front())
        nombres << nombreDe(suya->relativa);
    std::vector<std::pair<int, QByteArray>> halladas;
    for (const auto &nombre : nombres) {
        const auto hallados = porNombre.constFind(nombre);
        for (size_t i = 0; hallados != porNombre.cend() && i < hallados->size(); ++i) {
            const auto &local = (*hallados)[i];
            if (local.tamano != fichero.ficha.tamano)
                continue;
            const bool esDeEntonces =
                std::abs(local.modificado - fichero.ficha.modificado.toMSecsSinceEpoch()) <= toleranciaDeFecha;
            const int orden = suya != nullptr && local.relativa == suya->relativa ? 0
                              : local.relativa == fichero.relativa                ? 1
                              : esDeEntonces                                      ? 2
                                                                                  : 3;
            halladas.emplace_back(orden, local.relativa);
        }
    }
    std::sort(halladas.begin(), halladas.end());
    QByteArrayList posibles;
    for (auto &hallada : halladas)
        posibles << std::move(hallada.second);
    return posibles;
}

std::optional<QByteArray> Copiadas::huella(const FicheroDelCarrete &fichero) const
{
    const auto *suya = nota(fichero);
    if (suya == nullptr || suya->momento == 0 || !suya->ficha.identica(fichero.ficha))
        return {};
    const auto entonces = QDateTime::fromMSecsSinceEpoch(suya->momento);
    const auto ahora = QDateTime::currentDateTime();
    const bool esDeHoy = entonces.date() == ahora.date() && entonces <= ahora;
    return esDeHoy ? std::optional(suya->huella) : std::nullopt;
}

std::optional<QByteArray> Copiadas::huellaDeSuCopia(const FicheroDelCarrete &fichero) const
{
    const auto *suya = nota(fichero);
    return suya != nullptr ? std::optional(suya->huella) : std::nullopt;
}

bool Copiadas::anotar(const FicheroDelCarrete &fichero, const QByteArray &relativa, const QByteArray &huella,
                      const struct stat &copia)
{
    return escribirNota(claveDe(fichero), {huella, relativa, fichero.ficha, QDateTime::currentMSecsSinceEpoch(),
                                           nanosegundos(copia.st_ctim)});
}

bool Copiadas::anotarSitio(const FicheroDelCarrete &fichero, const QByteArray &relativa, const struct stat &copia)
{
    const auto *suya = nota(fichero);
    if (suya == nullptr)
        return true;
    auto nueva = *suya;
    nueva.relativa = relativa;
    nueva.cambio = nanosegundos(copia.st_ctim);
    return escribirNota(claveDe(fichero), nueva);
}

bool Copiadas::desmentir(const FicheroDelCarrete &fichero)
{
    return escribirNota(claveDe(fichero), {QByteArray(Huella::largo, '\0'), {}, fichero.ficha, 0, 0});
}

bool Copiadas::escribirNota(const QByteArray &enElCarrete, const Nota &nota)
{
    if (!cabeEnUnaLinea(enElCarrete) || !cabeEnUnaLinea(nota.relativa))
        return true;
    QByteArray linea = nota.huella.toHex() + '\t' + QByteArray::number(nota.ficha.tamano) + '\t' +
                       QByteArray::number(nota.ficha.modificado.toMSecsSinceEpoch()) + '\t' + enElCarrete + '\t' +
                       nota.relativa;
    for (const auto valor : {nota.momento, nota.ficha.modificacion, nota.ficha.nacimiento, nota.ficha.bloques,
                             nota.ficha.enlaces, nota.cambio})
        linea += '\t' + QByteArray::number(valor);
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

#include "extraction/BuscadorGlobal.h"

#include "extraction/Aguja.h"
#include "extraction/Renglones.h"
#include "extraction/Textos.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;

namespace vellora::BuscadorGlobal
{

namespace
{

constexpr int letrasDelExtracto = 120;
constexpr int letrasDelTitulo = 40;
constexpr qsizetype maximoDeNotas = 5;
constexpr qsizetype maximoPorTabla = 15;
constexpr qsizetype maximoDeFotos = 20;
constexpr int etiquetasALaVista = 4;

struct Fuente {
    const char16_t *sitio;
    const char16_t *tipo;
    const char16_t *icono;
};

constexpr std::array conversaciones{Fuente{u"/Mensajes", u"Mensaje", u"bubble.left.and.bubble.right.fill"},
                                    Fuente{u"/WhatsApp/Chats", u"WhatsApp", u"message.fill"}};
constexpr std::array tablas{Fuente{u"/Contactos.csv", u"Contacto", u"person.crop.circle.fill"},
                            Fuente{u"/Calendario.csv", u"Cita", u"calendar"}};

ResultadoGlobal nuevo(const Fuente &fuente, const QString &titulo, const QString &extracto, const QString &fichero)
{
    return {QUuid::createUuid(),
            QString::fromUtf16(fuente.tipo),
            titulo,
            recortar(extracto, letrasDelExtracto),
            fichero,
            QString::fromUtf16(fuente.icono),
            false};
}

struct Encargo {
    const Fuente *fuente;
    QString fichero;
};

/// The first line of each conversation that has it. Files are dealt out to as many threads as there are cores, and put
/// together again in their order.
void enConversaciones(const Aguja &aguja, const QString &datos, const Avance &avance, QList<ResultadoGlobal> &hallados)
{
    std::vector<Encargo> encargos;
    for (const auto &fuente : conversaciones) {
        for (const auto &fichero : ficherosDeTexto(datos + QString::fromUtf16(fuente.sitio)))
            encargos.push_back({&fuente, fichero});
    }
    std::vector<std::optional<ResultadoGlobal>> porEncargo(encargos.size());
    std::atomic<std::size_t> siguiente = 0;
    std::mutex avisando;
    std::size_t hechas = 0;
    const auto trabajar = [&] {
        PrimeraLinea lector(aguja);
        for (auto cual = siguiente++; cual < encargos.size(); cual = siguiente++) {
            const auto &[fuente, fichero] = encargos[cual];
            if (const auto linea = lector.en(fichero))
                porEncargo[cual] = nuevo(*fuente, nombreDeChat(fichero), *linea, fichero);
            if (!avance)
                continue;
            const std::scoped_lock uno(avisando);
            avance(static_cast<double>(++hechas) / static_cast<double>(encargos.size()));
        }
    };
    std::vector<std::jthread> hilos;
    const auto cuantos = std::min<std::size_t>(std::max(1U, std::thread::hardware_concurrency()), encargos.size());
    for (std::size_t i = 1; i < cuantos; ++i)
        hilos.emplace_back(trabajar);
    trabajar();
    hilos.clear();
    for (auto &uno : porEncargo) {
        if (uno)
            hallados << *std::move(uno);
    }
}

void enNotas(const Aguja &aguja, const QString &datos, QList<ResultadoGlobal> &hallados)
{
    constexpr Fuente notas{u"/Notas.txt", u"Nota", u"note.text"};
    const auto fichero = datos + QString::fromUtf16(notas.sitio);
    qsizetype cuantas = 0;
    porCadaLinea(fichero, [&](QByteArrayView linea) {
        if (aguja.en(linea) < 0)
            return true;
        hallados << nuevo(notas, u"En tus notas"_s, QString::fromUtf8(Renglones::sinSangria(linea)), fichero);
        return ++cuantas < maximoDeNotas;
    });
}

void enTabla(const Fuente &fuente, const Aguja &aguja, const QString &datos, QList<ResultadoGlobal> &hallados)
{
    const auto fichero = datos + QString::fromUtf16(fuente.sitio);
    qsizetype cuantas = 0;
    bool cabecera = true;
    porCadaLinea(fichero, [&](QByteArrayView linea) {
        if (std::exchange(cabecera, false) || aguja.en(linea) < 0)
            return true;
        auto texto = QString::fromUtf8(linea);
        const auto titulo = recortar(texto.section(u';', 0, 0), letrasDelTitulo);
        hallados << nuevo(fuente, titulo, texto.replace(u';', u" · "_s), fichero);
        return ++cuantas < maximoPorTabla;
    });
}

struct Foto {
    QString ruta;
    QStringList etiquetas;
    QString texto;
};

/// Absent when a record lacks what each must have: the index is then taken for damaged.
std::optional<Foto> fotoDe(const QJsonValue &valor)
{
    const auto ruta = valor[u"ruta"_s];
    const auto etiquetas = valor[u"etiquetas"_s];
    const auto texto = valor[u"texto"_s];
    if (!ruta.isString() || !etiquetas.isArray() || !texto.isString() || !valor[u"caras"_s].isDouble() ||
        !valor[u"esDocumento"_s].isBool())
        return {};
    Foto foto{ruta.toString(), {}, texto.toString()};
    for (const auto &etiqueta : etiquetas.toArray()) {
        if (!etiqueta.isString())
            return {};
        foto.etiquetas << etiqueta.toString();
    }
    return foto;
}

void enFotos(const Aguja &aguja, const QString &indice, QList<ResultadoGlobal> &hallados)
{
    constexpr Fuente fotos{u"", u"Foto", u"photo"};
    QFile fichero(indice);
    if (!QFileInfo(indice).isFile() || !fichero.open(QIODevice::ReadOnly))
        return;
    QList<ResultadoGlobal> suyos;
    const auto documento = QJsonDocument::fromJson(fichero.readAll());
    for (const auto &valor : documento.array()) {
        const auto foto = fotoDe(valor);
        if (!foto)
            return;
        const auto tiene = [&aguja](const QString &texto) {
            return aguja.esta(texto);
        };
        if (suyos.size() == maximoDeFotos ||
            !(std::any_of(foto->etiquetas.begin(), foto->etiquetas.end(), tiene) || tiene(foto->texto)))
            continue;
        suyos << nuevo(fotos, QFileInfo(foto->ruta).fileName(), foto->etiquetas.mid(0, etiquetasALaVista).join(u", "_s),
                       foto->ruta);
        suyos.last().esCarpetaFotos = true;
    }
    hallados << suyos;
}

} // namespace

QList<ResultadoGlobal> buscarEn(const QString &texto, const QString &datos, const QString &indiceFotos,
                                const Avance &avance)
{
    const Aguja aguja(texto);
    QList<ResultadoGlobal> hallados;
    enConversaciones(aguja, datos, avance, hallados);
    enNotas(aguja, datos, hallados);
    for (const auto &tabla : tablas)
        enTabla(tabla, aguja, datos, hallados);
    enFotos(aguja, indiceFotos, hallados);
    return hallados;
}

} // namespace vellora::BuscadorGlobal

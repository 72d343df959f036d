#include "photos/Galeria.h"

#include "core/CarpetaPrivada.h"
#include "core/Ejecutor.h"
#include "core/Motor.h"
#include "core/SegundoPlano.h"
#include "images/ImagenReducida.h"
#include "photos/ElegidasDelCarrete.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr double limiteDeSegundos = 3600;
// A view that is being scrolled asks for many at once and soon for others.
constexpr int reposo = 30;
// What was asked for so long ago is no longer in view.
constexpr qsizetype maximoEnCola = 400;
constexpr qsizetype unaPantalla = 64;

} // namespace

Galeria::Galeria(QObject *padre) : QObject(padre)
{
    espera.setSingleShot(true);
    espera.setInterval(reposo);
    connect(&espera, &QTimer::timeout, this, &Galeria::seguir);
}

Galeria::~Galeria() = default;

QString Galeria::carpeta()
{
    return CarpetaPrivada::enLaCache(u"miniaturas"_s);
}

QString Galeria::carpetaDe(const QString &udid)
{
    const auto huella = QCryptographicHash::hash(udid.toUtf8(), QCryptographicHash::Sha1).toHex().first(16);
    return carpeta() + u'/' + QString::fromLatin1(huella);
}

void Galeria::podar(const QString &udid, const QList<FotoDelCarrete> &carrete, qint64 maximo)
{
    QSet<QString> suyas;
    for (const auto &foto : carrete)
        suyas << nombreDeMiniatura(udid, foto.ruta, foto.bytes, foto.fecha);
    for (const auto &nombre : QDir(carpetaDe(udid)).entryList(QDir::Files)) {
        if (!suyas.contains(nombre))
            QFile::remove(carpetaDe(udid) + u'/' + nombre);
    }
    QFileInfoList todas;
    qint64 bytes = 0;
    QDirIterator recorrido(carpeta(), QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (recorrido.hasNext()) {
        todas << recorrido.nextFileInfo();
        bytes += todas.last().size();
    }
    std::sort(todas.begin(), todas.end(),
              [](const QFileInfo &una, const QFileInfo &otra) { return una.lastModified() < otra.lastModified(); });
    for (auto una = todas.cbegin(); una != todas.cend() && bytes > maximo; ++una)
        bytes -= QFile::remove(una->filePath()) ? una->size() : 0;
}

void Galeria::preparar(const QString &elUdid, const QString &laCarpeta)
{
    carpetaFotos = laCarpeta;
    if (udid == elUdid)
        return;
    udid = elUdid;
    ++numero;
    listas.clear();
    pedidas.clear();
    cola.clear();
}

QString Galeria::ficheroDe(const FotoDelCarrete &foto) const
{
    return carpetaDe(udid) + u'/' + nombreDeMiniatura(udid, foto.ruta, foto.bytes, foto.fecha);
}

bool Galeria::falta(const FotoDelCarrete &foto) const
{
    return !listas.contains(foto.ruta);
}

QString Galeria::miniatura(const FotoDelCarrete &foto)
{
    if (const auto lista = listas.constFind(foto.ruta); lista != listas.cend())
        return *lista;
    if (pedidas.contains(foto.ruta))
        return {};
    if (const auto fichero = ficheroDe(foto); QFileInfo::exists(fichero))
        return *listas.insert(foto.ruta, fichero);
    pedidas << foto.ruta;
    cola << foto;
    // Forgotten, it is asked for again when it comes back into view.
    while (cola.size() > maximoEnCola)
        pedidas.remove(cola.takeFirst().ruta);
    if (!preparando_ && !espera.isActive())
        espera.start();
    return {};
}

void Galeria::seguir()
{
    const auto &motor = Motor::lanzamiento();
    if (preparando_ || cola.isEmpty() || !motor)
        return;
    QList<FotoDelCarrete> tanda;
    QStringList rutas;
    // The last screen that was asked for, from its top.
    const auto desde = std::max<qsizetype>(0, cola.size() - unaPantalla);
    while (desde < cola.size() && tanda.size() < deUnaVez) {
        tanda << cola.takeAt(desde);
        rutas << tanda.last().ruta;
    }
    const auto lista = apuntarRutas(rutas);
    if (!lista)
        return;
    preparando_ = true;
    const auto argumentos =
        motor->argumentos + QStringList{u"miniaturas"_s, udid, lista->fichero, carpetaFotos, carpetaDe(udid)};
    const auto hacer = [ejecutable = motor->ejecutable, argumentos, lista] {
        return Ejecutor::rapido(ejecutable, argumentos, limiteDeSegundos);
    };
    enSegundoPlano(this, hacer, [this, tanda, suNumero = numero](const QString &dicho) {
        preparando_ = false;
        if (numero == suNumero)
            acabarTanda(tanda, dicho.contains("\"fin\""_L1));
        if (!cola.isEmpty())
            seguir();
    });
}

void Galeria::acabarTanda(const QList<FotoDelCarrete> &tanda, bool hastaElFinal)
{
    for (const auto &foto : tanda) {
        const auto fichero = ficheroDe(foto);
        if (!QFileInfo::exists(fichero)) {
            // What the phone could not give now it may give later; what is no picture is not asked for again.
            if (!hastaElFinal)
                pedidas.remove(foto.ruta);
            continue;
        }
        listas.insert(foto.ruta, fichero);
        ++preparadas_;
        emit hecha(foto.ruta);
    }
}

} // namespace vellora

#include "platform/Llavero.h"
#include "support/BusPrivado.h"
#include "support/CopiaDePrueba.h"
#include "support/LlaveroPrivado.h"
#include "support/MotorDePrueba.h"

#include <QCryptographicHash>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// Deletions by hand and of the whole library, by the true engine on the simulated phone.
class PruebaBorrado : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void elegidas_data();
    void elegidas();
    void loAnunciadoComoCopiado_data();
    void loAnunciadoComoCopiado();
    void loQueElTelefonoNiega();
    void carpetaQueNoSeLista();
    void biblioteca_data();
    void biblioteca();
    void copiaQueNoSirve_data();
    void copiaQueNoSirve();
    void todas();

private:
    QMap<QString, QByteArray> enElTelefono() const { return CopiaDePrueba::contenido(media + u"/DCIM"_s); }
    bool fallar(const QString &peticion, const QJsonValue &error)
    {
        return telefono->orden({{u"orden"_s, u"fallar"_s}, {u"peticion"_s, peticion}, {u"error"_s, error}})[u"bien"_s]
            .toBool();
    }
    bool dejarDeFallar() { return fallar(u""_s, QJsonValue::Null); }
    QString lista(const QStringList &rutas, const QString &nombre = u"lista.txt"_s) const
    {
        const auto fichero = casa->filePath(nombre);
        return escribirFichero(fichero, rutas.join(u'\n').toUtf8() + '\n') ? fichero : QString();
    }
    bool hayLista() const { return QFileInfo::exists(media + u"/PhotoData/Photos.sqlite"_s); }
    /// A backup of the phone as it stands now.
    bool hacerCopia(const QString &clave = {})
    {
        return CopiaDePrueba::copiarTelefono(telefono->contenido(udid), copias + u'/' + udid, clave);
    }
    Corrida vaciar(bool confirmado) { return correrMotor({u"borrar-biblioteca-fotos"_s, udid, copias}, confirmado); }

    std::unique_ptr<TelefonoSimulado> telefono;
    std::unique_ptr<QTemporaryDir> casa;
    QString udid;
    QString media;
    QString fotos;
    QString copias;
};

void PruebaBorrado::init()
{
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    casa = std::make_unique<QTemporaryDir>(QDir::homePath() + u"/casa"_s);
    udid = telefono->udid();
    media = telefono->contenido(udid) + u"/media"_s;
    fotos = casa->filePath(u"Fotos"_s);
    copias = casa->filePath(u"Copias"_s);
    QVERIFY(enElTelefono().size() > 10);
}

void PruebaBorrado::cleanup()
{
    telefono.reset();
    casa.reset();
}

void PruebaBorrado::elegidas_data()
{
    QTest::addColumn<QString>("orden");
    QTest::addColumn<bool>("conLista");
    QTest::newRow("files alone") << u"borrar-elegidas"_s << false;
    QTest::newRow("and the list") << u"borrar-elegidas-de-verdad"_s << true;
}

void PruebaBorrado::elegidas()
{
    QFETCH(const QString, orden);
    QFETCH(const bool, conLista);
    const auto todo = enElTelefono();
    const QStringList rutas{u"/DCIM/100APPLE/IMG_0003.JPG"_s, u"/DCIM/100APPLE/IMG_0003.MOV"_s};
    QCOMPARE(correrMotor({orden, udid, lista(rutas), fotos})[u"plan"_s][u"a_borrar"_s].toInt(), 2);
    QCOMPARE(enElTelefono(), todo);
    QCOMPARE(correrMotor({orden, udid, lista({u"/PhotoData/Photos.sqlite"_s}), fotos}, true).codigo, 1);
    const auto perdidas = lista(rutas, u"sin copiar.txt"_s);
    const auto hecho = correrMotor({orden, udid, lista(rutas), fotos, perdidas}, true);
    QCOMPARE(hecho[u"fin"_s][u"borrados"_s].toInt(), 2);
    QCOMPARE(hecho[u"fin"_s][u"siguen_ahi"_s].toInt(), 0);
    QCOMPARE(hecho[u"fin"_s][u"lista_borrada"_s].toBool(), conLista);
    QCOMPARE(enElTelefono().size(), todo.size() - 2);
    QCOMPARE(hayLista(), !conLista);
    // They are gone: there is nothing to delete, and the list is not touched for it.
    const auto otra = correrMotor({orden, udid, lista(rutas), fotos, perdidas}, true);
    QVERIFY(otra[u"fin"_s][u"borrados"_s].toInt() == 0 && otra[u"fin"_s][u"siguen_ahi"_s].toInt() == 0);
    QCOMPARE(otra[u"fin"_s][u"lista_borrada"_s].toBool(), false);
}

void PruebaBorrado::loAnunciadoComoCopiado_data()
{
    QTest::addColumn<QString>("caso");
    QTest::addColumn<int>("seVan");
    QTest::newRow("the copy turned to zeros") << u"ceros"_s << 1;
    QTest::newRow("the folder emptied") << u"vacía"_s << 1;
    QTest::newRow("half of a Live Photo is gone") << u"media"_s << 1;
    QTest::newRow("the folder not there") << u"sin carpeta"_s << 0;
    QTest::newRow("all as it was said") << u"nada"_s << 3;
}

/// What the owner was told to be copied goes by that proof alone; what was said to be lost goes without.
void PruebaBorrado::loAnunciadoComoCopiado()
{
    QFETCH(const QString, caso);
    QFETCH(const int, seVan);
    QCOMPARE(correrMotor({u"copiar"_s, udid, fotos}).codigo, 0);
    QVERIFY(escribirFichero(media + u"/DCIM/100APPLE/IMG_0900.JPG"_s, "sin copiar"));
    const auto todo = enElTelefono();
    const auto copia = fotos + u"/100APPLE/IMG_0003.JPG"_s;
    if (caso == u"ceros")
        QVERIFY(escribirFichero(copia, QByteArray(QFileInfo(copia).size(), '\0')));
    if (caso == u"vacía")
        QVERIFY(QDir(fotos).removeRecursively() && QDir().mkpath(fotos));
    if (caso == u"media")
        QVERIFY(QFile::remove(fotos + u"/100APPLE/IMG_0003.MOV"_s));
    if (caso == u"sin carpeta")
        QVERIFY(QDir(fotos).removeRecursively());
    const QStringList rutas{u"/DCIM/100APPLE/IMG_0003.JPG"_s, u"/DCIM/100APPLE/IMG_0003.MOV"_s,
                            u"/DCIM/100APPLE/IMG_0900.JPG"_s};
    const auto hecho =
        correrMotor({u"borrar-elegidas-de-verdad"_s, udid, lista(rutas), fotos, lista({rutas[2]}, u"sin.txt"_s)}, true);
    QCOMPARE(hecho.codigo, seVan == 3 ? 0 : 1);
    QCOMPARE(todo.size() - enElTelefono().size(), seVan);
    QCOMPARE(QFileInfo::exists(media + rutas[0]), seVan != 3);
    QCOMPARE(QFileInfo::exists(media + rutas[1]), seVan != 3);
    if (seVan == 1)
        QCOMPARE(hecho[u"fin"_s][u"sin_prueba"_s].toInt(), 2);
    if (seVan == 0)
        QVERIFY2(hecho.todo().contains(u"no está en su sitio") && hecho[u"cortado"_s][u"quedan"_s].toInt() == 3,
                 qPrintable(hecho.todo()));
    // What nobody was told about is taken for copied.
    if (seVan == 3)
        QVERIFY(leerFichero(fotos + u"/Borradas del iPhone.txt"_s).count('\n') == 2);
}

/// What the phone refuses, be it to look or to delete, is still there.
void PruebaBorrado::loQueElTelefonoNiega()
{
    const QStringList rutas{u"/DCIM/100APPLE/IMG_0001.JPG"_s, u"/DCIM/100APPLE/IMG_0002.JPG"_s,
                            u"/DCIM/100APPLE/IMG_9999.JPG"_s};
    QVERIFY(fallar(u"GetFileInfo:"_s + rutas[0], 10) && fallar(u"Remove:"_s + rutas[1], 10));
    const auto hecho =
        correrMotor({u"borrar-elegidas-de-verdad"_s, udid, lista(rutas), fotos, lista(rutas, u"sin.txt"_s)}, true);
    QCOMPARE(hecho.codigo, 1);
    QCOMPARE(hecho[u"fin"_s][u"borrados"_s].toInt(), 0);
    QCOMPARE(hecho[u"fin"_s][u"siguen_ahi"_s].toInt(), 2);
    QVERIFY(hayLista());
}

/// A folder that could not be listed is unknown: the phone's own list stays, and nobody says that all is gone.
void PruebaBorrado::carpetaQueNoSeLista()
{
    QCOMPARE(correrMotor({u"copiar"_s, udid, fotos}).codigo, 0);
    QVERIFY(fallar(u"ReadDir:/DCIM/101APPLE"_s, 10));
    const auto liberado = correrMotor({u"liberar"_s, udid, fotos}, true);
    QVERIFY(liberado[u"fin"_s][u"borrados"_s].toInt() > 0);
    QCOMPARE(liberado[u"fin"_s][u"sin_mirar"_s].toInt(), 1);
    QVERIFY(!liberado[u"fin"_s].contains(u"quedan_en_carrete"_s));
    QVERIFY(!liberado[u"fin"_s][u"lista_borrada"_s].toBool() && hayLista());
    QVERIFY(fallar(u"ReadDir:/DCIM"_s, 10));
    const auto listado = correrMotor({u"listar-carrete"_s, udid, fotos});
    QVERIFY(listado.carrete.isEmpty() && listado[u"carrete"_s][u"sin_mirar"_s].toInt() > 0);
    QVERIFY(dejarDeFallar() && hacerCopia());
    // The same of the library: not even begun when it is a folder of photos, and never finished.
    const auto antes = enElTelefono();
    QVERIFY(!antes.isEmpty() && fallar(u"ReadDir:/DCIM"_s, 10));
    const auto vaciado = vaciar(true);
    QVERIFY(vaciado.codigo == 1 && !vaciado.avisos.contains(u"fin"_s));
    QVERIFY(enElTelefono() == antes && hayLista());
    QVERIFY(dejarDeFallar() && fallar(u"ReadDir:/PhotoData/Thumbnails"_s, 10));
    const auto casi = vaciar(true);
    QCOMPARE(casi.codigo, 1);
    QVERIFY(enElTelefono().isEmpty());
    QVERIFY(casi[u"fin"_s][u"sin_mirar"_s].toInt() == 1 && !casi[u"fin"_s][u"lista_borrada"_s].toBool() && hayLista());
}

void PruebaBorrado::biblioteca_data()
{
    QTest::addColumn<QString>("clave");
    QTest::newRow("plain backup") << QString();
    QTest::newRow("encrypted backup") << u"la clave"_s;
}

void PruebaBorrado::biblioteca()
{
    QFETCH(const QString, clave);
    const BusPrivado bus;
    const LlaveroPrivado llavero;
    QVERIFY(llavero.listo() && (clave.isEmpty() || Llavero::guardar(clave, udid)));
    QVERIFY(escribirFichero(media + u"/PhotoData/Mutations/DCIM/100APPLE/IMG_0002/Adjustments/FullSizeRender.jpg"_s,
                            "retocada"));
    QVERIFY(hacerCopia(clave));
    // What the app makes anew is nothing to miss.
    QVERIFY(escribirFichero(media + u"/PhotoData/Mutations/DCIM/100APPLE/IMG_0002/Adjustments/Otra.jpg"_s, "x"));
    const auto plan = vaciar(false);
    QVERIFY2(plan[u"copia"_s][u"bien"_s].toBool(), qPrintable(plan[u"copia"_s][u"motivo"_s].toString()));
    QVERIFY(plan[u"plan"_s][u"a_borrar"_s].toInt() > enElTelefono().size());
    QCOMPARE(plan[u"copia"_s][u"telefono"_s].toString(), u"iPhone de Marta"_s);
    const auto cuantas = correrMotor({u"liberar"_s, udid, fotos}, true)[u"fin"_s][u"quedan_en_carrete"_s].toInt();
    QVERIFY(cuantas > 5);
    QCOMPARE(plan[u"copia"_s][u"fotos"_s].toInt(), cuantas);
    QVERIFY(!enElTelefono().isEmpty());
    // Something that the phone holds on to.
    QVERIFY(fallar(u"Remove:/DCIM/100APPLE/IMG_0002.JPG"_s, 10));
    const auto incompleta = vaciar(true);
    QVERIFY(incompleta.codigo == 1 && incompleta[u"fin"_s][u"quedan_fotos"_s].toInt() == 1);
    QVERIFY(dejarDeFallar());
    const auto hecho = vaciar(true);
    QVERIFY2(hecho.codigo == 0, qPrintable(hecho.todo()));
    QCOMPARE(hecho[u"fin"_s][u"quedan_miniaturas"_s].toInt(), 0);
    QVERIFY(hecho[u"fin"_s][u"lista_borrada"_s].toBool());
    for (const auto *carpeta : {"/DCIM", "/PhotoData/Mutations", "/PhotoData/Thumbnails"})
        QVERIFY2(CopiaDePrueba::contenido(media + QString::fromLatin1(carpeta)).isEmpty(), carpeta);
}

void PruebaBorrado::copiaQueNoSirve_data()
{
    QTest::addColumn<QString>("caso");
    QTest::addColumn<QString>("motivo");
    QTest::newRow("none") << u"ninguna"_s << u"No hay una copia de seguridad terminada"_s;
    QTest::newRow("a folder and an Info.plist") << u"carpeta"_s << u"No hay una copia de seguridad terminada"_s;
    QTest::newRow("of another phone") << u"otro"_s << u"no es de este iPhone"_s;
    QTest::newRow("not finished") << u"a medias"_s << u"No hay una copia de seguridad terminada"_s;
    QTest::newRow("a photo taken since") << u"nueva"_s << u"le faltan 1 archivos"_s;
    QTest::newRow("a photo changed since") << u"cambiada"_s << u"le faltan 1 archivos"_s;
    QTest::newRow("its file is not there") << u"sin fichero"_s << u"le faltan 1 archivos"_s;
    QTest::newRow("its file is short") << u"corto"_s << u"le faltan 1 archivos"_s;
    QTest::newRow("its list is cut off") << u"lista"_s << u"dañada"_s;
}

/// Nothing goes but what is in a finished backup of this very phone, file by file.
void PruebaBorrado::copiaQueNoSirve()
{
    QFETCH(const QString, caso);
    QFETCH(const QString, motivo);
    const auto suya = copias + u'/' + udid;
    const auto foto = u"/DCIM/100APPLE/IMG_0001.JPG"_s;
    const auto id = QString::fromLatin1(
        QCryptographicHash::hash("CameraRollDomain-Media" + foto.toUtf8(), QCryptographicHash::Sha1).toHex());
    const auto fichero = suya + u'/' + id.first(2) + u'/' + id;
    if (caso == u"carpeta")
        QVERIFY(escribirFichero(suya + u"/Info.plist"_s, "x") && escribirFichero(suya + u"/Manifest.db"_s, "x"));
    else if (caso != u"ninguna")
        QVERIFY(hacerCopia() && QFileInfo(fichero).size() == QFileInfo(media + foto).size());
    auto manifiesto = leerFichero(suya + u"/Manifest.plist"_s);
    if (caso == u"otro")
        QVERIFY(escribirFichero(suya + u"/Manifest.plist"_s,
                                manifiesto.replace(udid.toLatin1(), QByteArray(udid.size(), '0'))));
    if (caso == u"a medias")
        QVERIFY(escribirFichero(suya + u"/Status.plist"_s,
                                leerFichero(suya + u"/Status.plist"_s).replace("finished", "uploadin")));
    if (caso == u"nueva")
        QVERIFY(escribirFichero(media + u"/DCIM/100APPLE/IMG_0900.JPG"_s, "nueva"));
    if (caso == u"cambiada")
        QVERIFY(ponFecha(media + foto, 1'600'000'000));
    if (caso == u"sin fichero")
        QVERIFY(QFile::remove(fichero));
    if (caso == u"corto")
        QVERIFY(QFile::resize(fichero, QFileInfo(fichero).size() - 1));
    if (caso == u"lista")
        QVERIFY(QFile::resize(suya + u"/Manifest.db"_s, 100));
    const auto todo = CopiaDePrueba::contenido(media);
    const auto plan = vaciar(false);
    QVERIFY2(!plan[u"copia"_s][u"bien"_s].toBool() && plan[u"copia"_s][u"motivo"_s].toString().contains(motivo),
             qPrintable(plan[u"copia"_s][u"motivo"_s].toString()));
    const auto hecho = vaciar(true);
    QVERIFY2(hecho.codigo == 1 && hecho.todo().contains(motivo), qPrintable(hecho.todo()));
    QCOMPARE(correrMotor({u"borrar-fotos-iphone"_s, udid, copias}, true).codigo, 1);
    QCOMPARE(CopiaDePrueba::contenido(media), todo);
}

void PruebaBorrado::todas()
{
    const auto todo = enElTelefono();
    QVERIFY(hacerCopia());
    const auto plan = correrMotor({u"borrar-fotos-iphone"_s, udid, copias});
    QCOMPARE(plan[u"plan"_s][u"a_borrar"_s].toInt(), todo.size());
    QCOMPARE(correrMotor({u"borrar-fotos-iphone"_s, udid}, true).codigo, 1);
    QCOMPARE(enElTelefono(), todo);
    const auto hecho = correrMotor({u"borrar-fotos-iphone"_s, udid, copias}, true);
    QCOMPARE(hecho[u"fin"_s][u"borrados"_s].toInt(), todo.size());
    QVERIFY(enElTelefono().isEmpty() && hayLista());
}

QTEST_GUILESS_MAIN(PruebaBorrado)
#include "PruebaBorrado.moc"

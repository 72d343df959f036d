#include "session/Carpetas.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// Whose folder is whose: by the backup that it holds, not by what the phone is called today.
class PruebaCarpetas : public QObject
{
    Q_OBJECT

private slots:
    void init() { QDir(raiz()).removeRecursively(); }
    void elNombreNuevoNoPierdeLaCopia();
    void dosTelefonosDeUnNombre();
    void dosEnUnaCarpetaDeAntes();

private:
    static QString raiz() { return QDir::homePath() + u"/Vellora"_s; }
    static void crear(const QString &ruta)
    {
        QVERIFY(QDir().mkpath(QFileInfo(ruta).path()));
        QFile fichero(ruta);
        QVERIFY(fichero.open(QIODevice::WriteOnly));
    }
    static void copiaDe(const QString &carpeta, const QString &udid)
    {
        crear(raiz() + u'/' + carpeta + u"/Copias de seguridad/"_s + udid + u"/Info.plist"_s);
    }
    static Dispositivo telefono(const QString &nombre, const QString &udid)
    {
        Dispositivo uno;
        uno.nombre = nombre;
        uno.id = udid;
        return uno;
    }

    const QString ana = u"00008120-0000000000A0A0A0"_s;
    const QString leo = u"00008120-0000000000B0B0B0"_s;
};

void PruebaCarpetas::elNombreNuevoNoPierdeLaCopia()
{
    QCOMPARE(Carpetas::base(telefono(u"Ana"_s, ana)), raiz() + u"/Ana"_s);
    copiaDe(u"Ana"_s, ana);
    QCOMPARE(Carpetas::base(telefono(u"Ana de viaje"_s, ana)), raiz() + u"/Ana"_s);
    // What is there under the new name by now is no backup of it.
    crear(raiz() + u"/Ana de viaje/Fotos/100APPLE/IMG_0001.JPG"_s);
    QCOMPARE(Carpetas::base(telefono(u"Ana de viaje"_s, ana)), raiz() + u"/Ana"_s);
    QCOMPARE(Carpetas::fotos(telefono(u"Ana de viaje"_s, ana)), raiz() + u"/Ana de viaje/Fotos"_s);
    // One of each, of a version that went by the name: the present name's.
    copiaDe(u"Ana de viaje"_s, ana);
    QCOMPARE(Carpetas::base(telefono(u"Ana de viaje"_s, ana)), raiz() + u"/Ana de viaje"_s);
    // An empty folder of that name, or a link, holds no backup.
    QVERIFY(QDir().mkpath(raiz() + u"/Otra/Copias de seguridad/"_s + leo));
    QCOMPARE(Carpetas::base(telefono(u"Leo"_s, leo)), raiz() + u"/Leo"_s);
}

void PruebaCarpetas::dosTelefonosDeUnNombre()
{
    copiaDe(u"iPhone"_s, ana);
    const auto deLeo = telefono(u"iPhone"_s, leo);
    QCOMPARE(Carpetas::base(telefono(u"iPhone"_s, ana)), raiz() + u"/iPhone"_s);
    QCOMPARE(Carpetas::base(deLeo), raiz() + u"/iPhone (B0B0B0)"_s);
    QVERIFY(Carpetas::datos(deLeo) != Carpetas::datos(telefono(u"iPhone"_s, ana)));
    QVERIFY(Carpetas::fotos(deLeo) != Carpetas::fotos(telefono(u"iPhone"_s, ana)));
    copiaDe(u"iPhone (B0B0B0)"_s, leo);
    QCOMPARE(Carpetas::base(deLeo), raiz() + u"/iPhone (B0B0B0)"_s);
    // As long as names may be, the end of the identifier stays.
    const QString largo(300, u'ñ');
    copiaDe(QString(127, u'ñ'), ana);
    QVERIFY(Carpetas::base(telefono(largo, u"00008120-0000000000C0C0C0"_s)).endsWith(u" (C0C0C0)"_s));
    QVERIFY(QFileInfo(Carpetas::base(telefono(largo, leo))).fileName().toUtf8().size() <= 255);
}

void PruebaCarpetas::dosEnUnaCarpetaDeAntes()
{
    copiaDe(u"iPhone"_s, ana);
    copiaDe(u"iPhone"_s, leo);
    const auto deLeo = telefono(u"iPhone"_s, leo);
    QCOMPARE(Carpetas::base(deLeo), raiz() + u"/iPhone"_s); // where its backup is
    QCOMPARE(Carpetas::datos(telefono(u"iPhone"_s, ana)), raiz() + u"/iPhone/Mis datos"_s);
    QCOMPARE(Carpetas::datos(deLeo), raiz() + u"/iPhone/Mis datos (B0B0B0)"_s);
}

QTEST_GUILESS_MAIN(PruebaCarpetas)
#include "PruebaCarpetas.moc"

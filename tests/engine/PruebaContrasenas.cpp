#include "engine/backup/LlaveroDeCopia.h"
#include "platform/Llavero.h"
#include "support/BusPrivado.h"
#include "support/CopiaDePrueba.h"
#include "support/LlaveroPrivado.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;
using namespace vellora::motor;

/// The engine itself, on backups that the simulated phone writes.
class PruebaContrasenas : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(llavero.listo());
        QVERIFY(casa.crearTelefono());
    }
    void deLaCopiaCifrada();
    void sinCifrar();
    void loQueFalla_data();
    void loQueFalla();
    void muchasYLargas();
    void llaveroDanado();
    void derHostil();

private:
    struct Salida {
        int codigo = -1;
        QJsonArray lista;
        QMap<QString, QJsonObject> avisos; ///< the last of each kind
        QByteArray bytes;
        qsizetype renglonMasLargo = 0;
    };
    Salida motor(const QString &copia, const QString &clave) const
    {
        if (clave.isEmpty())
            Llavero::borrar(u"x"_s);
        else
            Llavero::guardar(clave, u"x"_s);
        QProcess proceso;
        proceso.setProcessChannelMode(QProcess::MergedChannels);
        proceso.start(QStringLiteral(MOTOR), {u"contrasenas"_s, u"x"_s, casa.ruta(copia)});
        proceso.waitForFinished(60'000);
        Salida salida{proceso.exitCode(), {}, {}, proceso.readAll(), 0};
        for (const auto &renglon : salida.bytes.split('\n')) {
            salida.renglonMasLargo = std::max(salida.renglonMasLargo, renglon.size() + 1);
            const auto aviso = QJsonDocument::fromJson(renglon).object();
            salida.avisos[aviso[u"tipo"_s].toString()] = aviso;
            for (const auto &una : aviso[u"lista"_s].toArray())
                salida.lista << una;
        }
        return salida;
    }
    /// Puts another keychain into the phone.
    void ponLlavero(const QJsonArray &claves) const
    {
        QFile fichero(casa.telefono() + u"/llavero.json"_s);
        QVERIFY(fichero.open(QIODevice::WriteOnly) && fichero.write(QJsonDocument(claves).toJson()) > 0);
    }

    BusPrivado bus;
    LlaveroPrivado llavero;
    CopiaDePrueba casa;
};

void PruebaContrasenas::deLaCopiaCifrada()
{
    QVERIFY(casa.copiar(u"cifrada"_s, u"rosquillas"_s));
    const auto salida = motor(u"cifrada"_s, u"rosquillas"_s);
    QCOMPARE(salida.codigo, 0);
    QStringList hay;
    for (const auto &una : salida.lista)
        hay << QStringList{una[u"tipo"_s].toString(), una[u"donde"_s].toString(), una[u"usuario"_s].toString(),
                           una[u"clave"_s].toString()}
                   .join(u'|');
    QCOMPARE(hay, (QStringList{
                      u"wifi|Casa de la abuela||rosquillas;1957"_s, u"wifi|MiFibra-4F2A||Xk7p9QmZ"_s,
                      u"wifi|Bar El Ñandú 🍻||pide una caña"_s, u"app|com.ejemplo.notas|marta|clave de la app"_s,
                      u"app|com.ejemplo.deporte|usuario-8871|"_s + QString(300, u'k'),
                      u"internet|correo.ejemplo.es|marta@ejemplo.es|M@rta;2026"_s,
                      u"internet|tienda.ejemplo.com|marta.ruiz|zapatos42"_s, u"internet|foro.ejemplo.org||ñandú"_s}));
    // Three are of classes that never leave the phone.
    QCOMPARE(salida.avisos[u"fin"_s][u"cuantas"_s].toInt(), 8);
    QCOMPARE(salida.avisos[u"fin"_s][u"cerradas"_s].toInt(), 3);
}

void PruebaContrasenas::sinCifrar()
{
    QVERIFY(casa.copiar(u"clara"_s, {}));
    const auto salida = motor(u"clara"_s, u"da igual"_s);
    QCOMPARE(salida.codigo, 0);
    QVERIFY(salida.avisos.contains(u"sin_cifrar"_s));
    QVERIFY(salida.lista.isEmpty());
}

void PruebaContrasenas::loQueFalla_data()
{
    QTest::addColumn<QString>("copia");
    QTest::addColumn<QString>("clave");
    QTest::newRow("wrong password") << u"cifrada"_s << u"otra"_s;
    QTest::newRow("no password") << u"cifrada"_s << QString();
    QTest::newRow("no backup") << u"no está"_s << u"rosquillas"_s;
}

void PruebaContrasenas::loQueFalla()
{
    QFETCH(const QString, copia);
    QFETCH(const QString, clave);
    const auto salida = motor(copia, clave);
    QVERIFY(salida.codigo != 0);
    QVERIFY(!salida.avisos[u"error"_s][u"motivo"_s].toString().isEmpty());
    QVERIFY(salida.lista.isEmpty());
}

/// No notice is so long that it would go through a file, and none is lost.
void PruebaContrasenas::muchasYLargas()
{
    QFile original(casa.telefono() + u"/llavero.json"_s);
    QVERIFY(original.open(QIODevice::ReadOnly));
    const auto deAntes = QJsonDocument::fromJson(original.readAll()).array();
    original.close();
    QJsonArray claves;
    const auto pon = [&](const QString &donde, const QString &clave) {
        claves << QJsonObject{{u"tabla"_s, u"inet"_s}, {u"clase"_s, 6}, {u"srvr"_s, donde}, {u"clave"_s, clave}};
    };
    for (int i = 0; i < 700; ++i)
        pon(u"sitio%1.es"_s.arg(i), QString(i % 90, u'\\') + u"clave\"%1"_s.arg(i));
    pon(u"enorme.es"_s, QString(6000, u'x'));
    pon(u"binaria.es"_s, u"\u0001\u0002"_s);
    pon(QString(), u"sin sitio"_s);
    ponLlavero(claves);
    QVERIFY(casa.copiar(u"muchas"_s, u"x"_s));
    ponLlavero(deAntes);
    const auto salida = motor(u"muchas"_s, u"x"_s);
    QCOMPARE(salida.lista.size(), 700);
    QCOMPARE(salida.lista.last()[u"clave"_s].toString(), QString(699 % 90, u'\\') + u"clave\"699"_s);
    QCOMPARE(salida.avisos[u"fin"_s][u"cuantas"_s].toInt(), 700);
    QCOMPARE(salida.avisos[u"fin"_s][u"sin_texto"_s].toInt(), 3);
    QVERIFY(salida.renglonMasLargo <= 4096);
    QVERIFY(!salida.bytes.contains("fichero_datos"));
}

/// A keychain with a flipped bit anywhere loses that item at most, and never gives a wrong password.
void PruebaContrasenas::llaveroDanado()
{
    ClavesDeClase claves;
    QVERIFY(!abrirLlavero("no es un plist", claves));
    const auto vacio =
        abrirLlavero("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>genp</key><array><dict>"
                     "<key>v_Data</key><data>AwAAAAcAAAD/////</data></dict><dict/></array></dict></plist>",
                     claves);
    QVERIFY(vacio);
    QVERIFY(vacio->claves.isEmpty());
    QCOMPARE(vacio->cerradas, 1);
}

void PruebaContrasenas::derHostil()
{
    const QByteArray bueno = QByteArray::fromHex("310f300d0c0461636374040561626364 65").replace(' ', "");
    QCOMPARE(atributosDe(bueno).value(0).second, QByteArray("abcde"));
    QRandomGenerator azar(11);
    for (int i = 0; i < 20'000; ++i) {
        auto roto = bueno;
        roto[azar.bounded(static_cast<int>(roto.size()))] = static_cast<char>(azar.bounded(256));
        roto.resize(azar.bounded(static_cast<int>(roto.size()) + 1));
        atributosDe(roto); // the sanitizers watch
    }
    QVERIFY(atributosDe("\x31\x80\x00\x00").isEmpty()); // no length told
    QVERIFY(atributosDe("\x31\x84\xff\xff\xff\xff").isEmpty());
}

QTEST_GUILESS_MAIN(PruebaContrasenas)
#include "PruebaContrasenas.moc"

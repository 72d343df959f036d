#include "backups/Automatico.h"
#include "backups/CarpetaDeCopias.h"
#include "backups/Catalogo.h"
#include "backups/Comprobante.h"
#include "backups/Copias.h"
#include "backups/CopiasAnteriores.h"
#include "support/TelefonoSimulado.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// The weekly backup: its script run for real, its unit files read by the system's own checker.
class PruebaAutomatico : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void sinTelefonoCalla();
    void copiaCuandoToca();
    void laEdadDecide_data();
    void laEdadDecide();
    void laMediaNoCuenta();
    void soloLoQueCambioSobreUnaGemela();
    void copiaQueFalla();
    void laQueSeCuelgaSeAcaba();
    void lasUnidadesValen();
    void encenderYApagar();
    void elSistemaNoQuiere();

private:
    int correrGuion(const QString &udid)
    {
        QFile fichero(Automatico::rutaDelGuion());
        QDir().mkpath(QFileInfo(fichero).path());
        if (!fichero.open(QIODevice::WriteOnly))
            return -1;
        fichero.write(Automatico::guion(udid, destino, u"/usr/bin/ideviceinfo"_s, QStringLiteral(VELLORA)).toUtf8());
        fichero.close();
        const auto hecho = ejecutar(u"/bin/bash"_s, {Automatico::rutaDelGuion()});
        dicho = hecho.salida + hecho.palabras;
        return hecho.codigo;
    }
    /// Makes the backup older, with its note.
    void envejecer(int segundos)
    {
        const auto carpeta = destino + u'/' + telefono->udid();
        for (const auto &nombre : {u"/Manifest.db"_s, u"/Manifest.plist"_s, u"/Info.plist"_s}) {
            QFile fichero(carpeta + nombre);
            QVERIFY(fichero.open(QIODevice::ReadWrite));
            QVERIFY(fichero.setFileTime(QDateTime::currentDateTime().addSecs(-segundos),
                                        QFileDevice::FileModificationTime));
        }
        QVERIFY(Comprobante::escribir(carpeta, ComprobacionDeCopia::Veredicto::Entera));
    }
    /// A program in the way of the system's own: it writes down what it was asked, and answers.
    void fingir(const QString &programa, const QByteArray &cuerpo)
    {
        const auto ruta = QDir::homePath() + u"/bin/"_s + programa;
        QFile fichero(ruta);
        QVERIFY(fichero.open(QIODevice::WriteOnly));
        fichero.write("#!/bin/sh\necho \"$0 $*\" >> \"$HOME/pedido\"\n" + cuerpo + '\n');
        fichero.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString pedido()
    {
        QFile fichero(QDir::homePath() + u"/pedido"_s);
        return fichero.open(QIODevice::ReadOnly) ? QString::fromUtf8(fichero.readAll()) : QString();
    }

    std::unique_ptr<TelefonoSimulado> telefono;
    QString destino;
    QByteArray dicho;
};

void PruebaAutomatico::initTestCase()
{
    QVERIFY(QDir().mkpath(QDir::homePath() + u"/bin"_s));
    qputenv("PATH", (QDir::homePath() + u"/bin:"_s).toUtf8() + qgetenv("PATH"));
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
}

void PruebaAutomatico::init()
{
    // A name that a careless script would read as commands.
    destino = QDir::homePath() + u"/Copias de \"ñ\" $(touch ~/mal) `touch ~/mal` $HOME \\"_s;
    QDir(destino).removeRecursively();
    QVERIFY(QDir().mkpath(destino));
    for (const auto &fichero : {u"/pedido"_s, u"/.local/share/Vellora/copias.log"_s})
        QFile::remove(QDir::homePath() + fichero);
    fingir(u"notify-send"_s, {});
    fingir(u"systemctl"_s, {});
    Copias::ponSinCifrar(telefono->udid()); // what its owner said when asked
}

void PruebaAutomatico::sinTelefonoCalla()
{
    QCOMPARE(correrGuion(u"00008120-0000000000000000"_s), 0);
    QCOMPARE(dicho, QByteArray());
    QCOMPARE(Automatico::registro(), QString());
    QCOMPARE(pedido(), QString());
    QVERIFY(telefono->orden(u"bloquear"_s));
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QVERIFY(telefono->orden(u"desbloquear"_s));
    QVERIFY(Automatico::registro().isEmpty() && pedido().isEmpty());
}

void PruebaAutomatico::copiaCuandoToca()
{
    QVERIFY(!Catalogo::fechaDeLaUltimaCopia(destino, telefono->udid()));
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QCOMPARE(dicho, QByteArray());
    const auto registro = Automatico::registro();
    QVERIFY(registro.contains(u"  Empiezo la copia automática\n"_s) &&
            registro.endsWith(u"  Copia terminada bien\n"_s));
    QVERIFY(pedido().contains(u"Vellora Tu iPhone ya tiene copia de seguridad al día."_s));
    // The program finds it at its next start.
    QCOMPARE(
        Catalogo::diasDesde(Catalogo::fechaDeLaUltimaCopia(destino, telefono->udid()), QDateTime::currentDateTime()),
        0);
    QVERIFY(!QFile::exists(QDir::homePath() + u"/mal"_s));
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QCOMPARE(Automatico::registro(), registro); // last week's is good yet
}

void PruebaAutomatico::laEdadDecide_data()
{
    QTest::addColumn<int>("segundos");
    QTest::addColumn<bool>("copia");
    constexpr int dia = 86400;
    QTest::newRow("six days") << 6 * dia << false;
    QTest::newRow("a minute less than seven") << 7 * dia - 60 << false;
    QTest::newRow("seven days") << 7 * dia + 5 << true;
    QTest::newRow("a year") << 365 * dia << true;
}

void PruebaAutomatico::laEdadDecide()
{
    QFETCH(int, segundos);
    QFETCH(bool, copia);
    QCOMPARE(correrGuion(telefono->udid()), 0);
    envejecer(segundos);
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QCOMPARE(Automatico::registro().count(u"Empiezo la copia automática"_s), copia ? 2 : 1);
}

void PruebaAutomatico::laMediaNoCuenta()
{
    // What the tool writes before it begins, by another program's run that came to nothing.
    const auto carpeta = destino + u'/' + telefono->udid();
    QVERIFY(QDir().mkpath(carpeta));
    QFile info(carpeta + u"/Info.plist"_s);
    QVERIFY(info.open(QIODevice::WriteOnly) && info.write("<plist/>") > 0);
    info.close();
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QVERIFY(Automatico::registro().endsWith(u"  Copia terminada bien\n"_s));
    QCOMPARE(Catalogo::estadoDe(carpeta).clase, Catalogo::Clase::Entera);
}

void PruebaAutomatico::soloLoQueCambioSobreUnaGemela()
{
    QCOMPARE(correrGuion(telefono->udid()), 0);
    const auto carpeta = destino + u'/' + telefono->udid();
    envejecer(8 * 86400);
    const auto vieja = arbol(carpeta);
    // One file changes, one goes, one comes.
    const auto media = telefono->contenido(telefono->udid()) + u"/media"_s;
    const auto fotos = QDir(media + u"/DCIM/100APPLE"_s).entryList(QDir::Files);
    QVERIFY(fotos.size() > 2);
    QFile cambia(media + u"/DCIM/100APPLE/"_s + fotos[0]);
    QVERIFY(cambia.open(QIODevice::WriteOnly | QIODevice::Truncate) && cambia.write("otra foto") > 0);
    cambia.close();
    QVERIFY(QFile::remove(media + u"/DCIM/100APPLE/"_s + fotos[1]));
    QVERIFY(QFile::copy(media + u"/DCIM/100APPLE/"_s + fotos[2], media + u"/DCIM/100APPLE/IMG_9999.JPG"_s));

    // One that comes to nothing leaves the old one as it is, whose bytes it shared.
    QVERIFY(telefono
                ->orden({{u"orden"_s, u"fallar"_s},
                         {u"peticion"_s, u"Backup"_s},
                         {u"error"_s, 205},
                         {u"tras_ficheros"_s, 1},
                         {u"veces"_s, 1}})[u"bien"_s]
                .toBool());
    QCOMPARE(correrGuion(telefono->udid()), 1);
    QCOMPARE(arbol(carpeta), vieja);
    QVERIFY(Automatico::registro().endsWith(u"  La copia falló (el iPhone pudo quedarse bloqueado)\n"_s));
    QVERIFY(Automatico::ultimoResultado().contains(u"no se pudo completar. La copia no se pudo completar."_s));

    QCOMPARE(correrGuion(telefono->udid()), 0); // at the next interval
    QVERIFY(!Automatico::registro().contains(u"Full backup mode."_s) ||
            Automatico::registro().count(u"Full backup mode."_s) == 1);
    QVERIFY(Automatico::ultimoResultado().endsWith(u"terminó bien."_s));
    const auto anteriores = CopiasAnteriores::listar(destino, telefono->udid(), true);
    QCOMPARE(anteriores.size(), 1);
    QCOMPARE(arbol(anteriores.first().carpeta()), vieja);
    QVERIFY(comprobarCopia(telefono->udid(), anteriores.first().carpeta()).entera());
    // What both hold is on the disk once.
    const auto juntas = CarpetaDeCopias::bytesEnDisco({carpeta, anteriores.first().carpeta()});
    const auto una = CarpetaDeCopias::bytesEnDisco({carpeta});
    QVERIFY2(juntas < una * 3 / 2, qPrintable(u"%1 %2"_s.arg(juntas).arg(una)));
    QVERIFY(anteriores.first().bytes < una / 2);
}

void PruebaAutomatico::copiaQueFalla()
{
    QVERIFY(telefono
                ->orden({{u"orden"_s, u"fallar"_s},
                         {u"peticion"_s, u"Backup"_s},
                         {u"error"_s, 208},
                         {u"veces"_s, 1}})[u"bien"_s]
                .toBool());
    QCOMPARE(correrGuion(telefono->udid()), 1);
    QVERIFY(Automatico::registro().endsWith(u"  La copia falló (el iPhone pudo quedarse bloqueado)\n"_s));
    QVERIFY(Automatico::registro().contains(u"El iPhone estaba bloqueado."_s));
    QVERIFY(pedido().contains(u"No pude hacer la copia. Desbloquea el iPhone y déjalo conectado."_s));
    QVERIFY(!pedido().contains(u"al día"_s));
    // Tried again at once when it is time, since nothing was made.
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QVERIFY(Automatico::registro().endsWith(u"  Copia terminada bien\n"_s));
}

void PruebaAutomatico::laQueSeCuelgaSeAcaba()
{
    auto texto = Automatico::guion(telefono->udid(), destino, u"/usr/bin/ideviceinfo"_s, QStringLiteral(VELLORA));
    QVERIFY(texto.contains(u"--kill-after=60 12h "_s));
    texto.replace(u"12h "_s, u"3s "_s);
    QVERIFY(telefono->orden({{u"orden"_s, u"frenar"_s}, {u"bytes_por_segundo"_s, 20000}})[u"bien"_s].toBool());
    QFile fichero(Automatico::rutaDelGuion());
    QVERIFY(fichero.open(QIODevice::WriteOnly) && fichero.write(texto.toUtf8()) > 0);
    fichero.close();
    QVERIFY(ejecutar(u"/bin/bash"_s, {Automatico::rutaDelGuion()}, 60).codigo > 0);
    QVERIFY(telefono->orden({{u"orden"_s, u"frenar"_s}, {u"bytes_por_segundo"_s, 0}})[u"bien"_s].toBool());
    QVERIFY(procesosCon(u"idevicebackup2"_s).isEmpty());
    QVERIFY(Automatico::registro().contains(u"Cancelado por ti."_s) || Automatico::registro().contains(u"falló"_s));
    QVERIFY(!pedido().contains(u"al día"_s));
}

void PruebaAutomatico::lasUnidadesValen()
{
    const auto carpeta = QDir::homePath() + u"/unidades"_s;
    QVERIFY(QDir().mkpath(carpeta));
    const auto escribir = [&](const QString &nombre, const QString &texto) {
        QFile fichero(carpeta + u'/' + nombre);
        QVERIFY(fichero.open(QIODevice::WriteOnly) && fichero.write(texto.toUtf8()) > 0);
    };
    escribir(Automatico::etiqueta() + u".service"_s, Automatico::servicio());
    escribir(Automatico::etiqueta() + u".timer"_s, Automatico::temporizador(3));
    const auto visto = ejecutar(u"systemd-analyze"_s,
                                {u"verify"_s, u"--user"_s, carpeta + u'/' + Automatico::etiqueta() + u".service"_s,
                                 carpeta + u'/' + Automatico::etiqueta() + u".timer"_s});
    QVERIFY2(visto.codigo == 0, visto.palabras.constData());
    QCOMPARE(visto.palabras, QByteArray());
}

void PruebaAutomatico::encenderYApagar()
{
    QVERIFY(!Automatico::activa());
    QCOMPARE(Automatico::activar(telefono->udid(), destino).value_or(QString()), QString());
    QVERIFY(Automatico::activa());
    const auto timer = Automatico::etiqueta() + u".timer"_s;
    QVERIFY(pedido().contains(u"systemctl --user enable --now "_s + timer));
    QVERIFY(QFileInfo(Automatico::rutaDelGuion()).isExecutable());
    QFile guion(Automatico::rutaDelGuion());
    QVERIFY(guion.open(QIODevice::ReadOnly));
    QVERIFY(QString::fromUtf8(guion.readAll()).contains(u"UDID=\"%1\""_s.arg(telefono->udid())));
    Automatico::desactivar();
    QVERIFY(!Automatico::activa());
    QVERIFY(pedido().contains(u"systemctl --user disable --now "_s + timer));
    QVERIFY(QFile::exists(Automatico::rutaDelGuion()));
}

void PruebaAutomatico::elSistemaNoQuiere()
{
    fingir(u"systemctl"_s, "echo 'Failed to connect to bus' >&2; exit 1");
    const auto fallo = Automatico::activar(telefono->udid(), destino);
    QVERIFY(fallo && fallo->startsWith(u"El sistema no aceptó el encargo: Failed to connect to bus"_s));
    QVERIFY(Automatico::activa()); // its files stay, as they were written
    Automatico::desactivar();
    QVERIFY(!Automatico::activa());
    // A file where the folder of the units should be.
    const auto unidades = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/systemd"_s;
    QDir(unidades).removeRecursively();
    QFile estorbo(unidades);
    QVERIFY(estorbo.open(QIODevice::WriteOnly));
    QCOMPARE(Automatico::activar(telefono->udid(), destino), u"No pude crear el encargo del sistema."_s);
    QVERIFY(estorbo.remove());
}

QTEST_GUILESS_MAIN(PruebaAutomatico)
#include "PruebaAutomatico.moc"

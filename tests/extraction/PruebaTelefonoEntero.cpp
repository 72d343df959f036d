#include "extraction/Extraccion.h"
#include "extraction/Textos.h"
#include "support/BaseDePrueba.h"
#include "support/CopiaDePrueba.h"

#include <QCryptographicHash>

using namespace Qt::StringLiterals;
using namespace vellora;

/// A backup of the simulated phone through the true engine and all extractors, against what the phone's own databases
/// hold, which are asked here in another way.
class PruebaTelefonoEntero : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void palabrasDelCuerpo();
    void recordatorios();
    void grabaciones();
    void papelera();
    void diasEnteros();
    void loQueFaltaSeNombra();

private:
    /// The first column of each row.
    QList<QByteArray> preguntar(const QString &base, const char *sql) const;
    QByteArray hecho(const QString &nombre) const { return leerFichero(a + u'/' + nombre); }

    CopiaDePrueba casa;
    QString a;
    QStringList resumen;
};

void PruebaTelefonoEntero::initTestCase()
{
    QVERIFY(QDir().mkpath(QDir::homePath() + u"/tmp"_s));
    qputenv("TMPDIR", QFile::encodeName(QDir::homePath() + u"/tmp"_s));
    QVERIFY(casa.crearTelefono() && casa.copiar(u"copia"_s, QString()));
    const auto desde = casa.ruta(u"desempaquetada"_s);
    QCOMPARE(QProcess::execute(QStringLiteral(MOTOR), {u"extraer"_s, u"-"_s, casa.ruta(u"copia"_s), desde}), 0);
    a = casa.ruta(u"Mis datos"_s);
    resumen = Extraccion::todo(desde, a).join(u'\n').split(u'\n');
}

QList<QByteArray> PruebaTelefonoEntero::preguntar(const QString &base, const char *sql) const
{
    QList<QByteArray> celdas;
    sqlite3 *abierta = nullptr;
    sqlite3_stmt *consulta = nullptr;
    const auto ruta = casa.telefono() + u"/dominios/"_s + base;
    if (sqlite3_open_v2(ruta.toUtf8().constData(), &abierta, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
        sqlite3_prepare_v2(abierta, sql, -1, &consulta, nullptr) == SQLITE_OK) {
        while (sqlite3_step(consulta) == SQLITE_ROW)
            celdas << QByteArray(static_cast<const char *>(sqlite3_column_blob(consulta, 0)),
                                 sqlite3_column_bytes(consulta, 0));
    }
    sqlite3_finalize(consulta);
    sqlite3_close(abierta);
    return celdas;
}

void PruebaTelefonoEntero::palabrasDelCuerpo()
{
    const auto sms = u"HomeDomain/Library/SMS/sms.db"_s;
    const auto cuerpos = preguntar(sms, "SELECT attributedBody FROM message WHERE IFNULL(text,'') = '' AND "
                                        "attributedBody IS NOT NULL AND ROWID IN (SELECT message_id FROM "
                                        "chat_message_join)");
    QVERIFY(cuerpos.size() > 4);
    QByteArray escrito;
    for (const auto &fichero : ficherosDeTexto(a + u"/Mensajes"_s))
        escrito += leerFichero(fichero) + '\n';
    for (const auto &cuerpo : cuerpos) {
        // The phone of the tests says nothing of more than 127 bytes this way, and no sign of its own before it.
        const auto sitio = cuerpo.indexOf(QByteArray::fromHex("84012b")) + 3;
        const auto texto = cuerpo.mid(sitio + 1, cuerpo[sitio]);
        QVERIFY2(!texto.isEmpty() && escrito.contains(": " + texto + '\n'), texto.constData());
    }
    const auto conTexto = preguntar(sms, "SELECT 1 FROM message WHERE text <> '' AND ROWID IN (SELECT message_id "
                                         "FROM chat_message_join)");
    const auto cuenta = u"Mensajes: %1 en "_s.arg(conTexto.size() + cuerpos.size());
    QVERIFY2(!resumen.filter(cuenta).isEmpty(), qPrintable(resumen.first()));
}

void PruebaTelefonoEntero::recordatorios()
{
    const auto sitio = u"AppDomainGroup-group.com.apple.reminders/Container_v1/Stores"_s;
    QList<QByteArray> vivos = preguntar(u"HomeDomain/Library/Calendar/Calendar.sqlitedb"_s,
                                        "SELECT summary FROM CalendarItem WHERE entity_type = 3");
    QCOMPARE(vivos.size(), 2);
    const QDir bases(casa.telefono() + u"/dominios/"_s + sitio);
    for (const auto &base : bases.entryList({u"Data-*.sqlite"_s}))
        vivos += preguntar(sitio + u'/' + base, "SELECT ZTITLE FROM ZREMCDREMINDER r JOIN ZREMCDBASELIST l ON l.Z_PK = "
                                                "r.ZLIST WHERE NOT r.ZMARKEDFORDELETION AND NOT l.ZMARKEDFORDELETION");
    const auto lineas = hecho(u"Recordatorios.txt"_s);
    QVERIFY(vivos.contains("Llamar al fontanero")); // in the log alone
    for (const auto &titulo : vivos)
        QVERIFY2(lineas.contains("] " + titulo + "   "), titulo.constData());
    QVERIFY(lineas.contains("[hecho] Pagar el comedor   "));
    QCOMPARE(lineas.count("\n["), vivos.size());
}

void PruebaTelefonoEntero::grabaciones()
{
    const auto estan = QDir(a + u"/Grabadora"_s).entryList(QDir::Files | QDir::Hidden);
    QVERIFY(estan.contains(u"20190704 101500.m4a"_s));
    QCOMPARE(estan.filter(u".qta"_s).size(), 1);
    QCOMPARE(estan.size(), 3);
    QCOMPARE(QDir(a + u"/Eliminado hace poco/Grabadora"_s).entryList(QDir::Files).size(), 1);
}

void PruebaTelefonoEntero::papelera()
{
    for (const auto &[sitio, que] :
         {std::pair(u"Notas.txt"_s, "Discurso que no di"), std::pair(u"Recordatorios.txt"_s, "Devolver el taladro"),
          std::pair(u"Recordatorios.txt"_s, "Pedir cajas")}) {
        QVERIFY(!hecho(sitio).contains(que));
        QVERIFY(hecho(u"Eliminado hace poco/"_s + sitio).contains(que));
    }
    QByteArray tirados;
    for (const auto &fichero : ficherosDeTexto(a + u"/Eliminado hace poco/Mensajes"_s))
        tirados += leerFichero(fichero);
    QCOMPARE(tirados.count("] "), 1);
    QVERIFY(tirados.endsWith("] YO: Esto mejor lo borro"));
}

void PruebaTelefonoEntero::diasEnteros()
{
    const auto citas = hecho(u"Calendario.csv"_s);
    QVERIFY(citas.contains("Puente de diciembre;"));
    for (const auto &linea : citas.split('\n')) {
        if (linea.startsWith("Puente de diciembre;") || linea.startsWith("Cumple de Lucía;"))
            QVERIFY2(linea.contains(" 00:00;") && linea.contains(" 23:59;"), linea.constData());
    }
}

void PruebaTelefonoEntero::loQueFaltaSeNombra()
{
    // All files are damaged in one way or another, more than are told one by one; two are not there at all.
    const auto copia = casa.ruta(u"coja"_s);
    QVERIFY(casa.copiar(u"coja"_s, QString()));
    const auto ficheros = CopiaDePrueba::contenido(copia).keys().filter(QRegularExpression(u"^../"_s));
    for (const auto &fichero : ficheros)
        QVERIFY(QFile::remove(copia + u'/' + fichero) && QDir().mkpath(copia + u'/' + fichero));
    for (const auto *ruta : {"HomeDomain-Library/SMS/sms.db", "HomeDomain-Library/Voicemail/voicemail.db"}) {
        const auto id = QString::fromLatin1(QCryptographicHash::hash(ruta, QCryptographicHash::Sha1).toHex());
        QVERIFY(QDir().rmdir(copia + u'/' + id.left(2) + u'/' + id));
    }
    QProcess motor;
    motor.start(QStringLiteral(MOTOR), {u"extraer"_s, u"-"_s, copia, casa.ruta(u"de la coja"_s)});
    QVERIFY(motor.waitForFinished());
    const auto dicho = motor.readAllStandardOutput();
    QVERIFY(dicho.count("No se pudo sacar") >= 20);
    QVERIFY(dicho.contains("No se pudo sacar HomeDomain/Library/SMS/sms.db: falta en la copia."));
    QVERIFY(dicho.contains("No se pudo sacar HomeDomain/Library/Voicemail/voicemail.db: falta en la copia."));
}

QTEST_GUILESS_MAIN(PruebaTelefonoEntero)
#include "PruebaTelefonoEntero.moc"

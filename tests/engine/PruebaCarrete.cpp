#include "core/CarpetaDeDestino.h"
#include "support/CopiaDePrueba.h"
#include "support/MotorDePrueba.h"

#include <QDir>
#include <QProcess>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// The commands of the camera roll, by the true engine on the simulated phone.
class PruebaCarrete : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void copiarSoloLoQueFalta();
    void copiarSinPisarNada();
    void copiarPorContenido();
    void copiarLoDeFueraDelCarrete();
    void copiarNombresRaros();
    void copiarDosALaVez();
    void copiarLoQueSePueda();
    void copiarSinCable();
    void copiarSinTelefono();
    void copiarElegidas();
    void liberarSoloPlanea();
    void liberarLoCopiado();
    void liberarSoloConPrueba_data();
    void liberarSoloConPrueba();
    void liberarSinCable();
    void listar();
    void recuperar_data();
    void recuperar();

private:
    static Corrida motor(const QStringList &argumentos, bool confirmado = false)
    {
        return correrMotor(argumentos, confirmado);
    }
    Corrida copiar() { return motor({u"copiar"_s, udid, fotos}); }
    Corrida liberar(bool confirmado) { return motor({u"liberar"_s, udid, fotos}, confirmado); }
    QMap<QString, QByteArray> enElTelefono() const { return CopiaDePrueba::contenido(media + u"/DCIM"_s); }
    /// What stands in the folder, its notes and lists left out.
    QMap<QString, QByteArray> enLaCarpeta() const
    {
        auto todo = CopiaDePrueba::contenido(fotos);
        todo.removeIf([](const auto &uno) {
            return uno.key().startsWith(u".vellora-huellas-") || uno.key() == u".vellora-cerrojo" ||
                   uno.key() == u"Borradas del iPhone.txt";
        });
        return todo;
    }
    bool fallar(const QString &peticion, int error)
    {
        return telefono->orden({{u"orden"_s, u"fallar"_s}, {u"peticion"_s, peticion}, {u"error"_s, error}})[u"bien"_s]
            .toBool();
    }
    QString lista(const QStringList &rutas) const
    {
        const auto fichero = casa->filePath(u"lista.txt"_s);
        return escribirFichero(fichero, rutas.join(u'\n').toUtf8() + '\n') ? fichero : QString();
    }

    std::unique_ptr<TelefonoSimulado> telefono;
    std::unique_ptr<QTemporaryDir> casa;
    QString udid;
    QString media;
    QString fotos;
};

void PruebaCarrete::init()
{
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    // Where programs keep what may go, memory may stand for a disk.
    casa = std::make_unique<QTemporaryDir>(QDir::homePath() + u"/casa"_s);
    udid = telefono->udid();
    media = telefono->contenido(udid) + u"/media"_s;
    fotos = casa->filePath(u"Fotos"_s);
    QVERIFY(enElTelefono().size() > 10);
}

void PruebaCarrete::cleanup()
{
    telefono.reset();
    casa.reset();
}

void PruebaCarrete::copiarSoloLoQueFalta()
{
    const auto todo = enElTelefono();
    const auto primera = copiar();
    QCOMPARE(primera.codigo, 0);
    QCOMPARE(primera[u"total"_s][u"n"_s].toInt(), todo.size());
    QCOMPARE(primera[u"fin"_s][u"copiados"_s].toInt(), todo.size());
    QCOMPARE(primera[u"progreso"_s][u"hechos"_s].toInt(), todo.size()); // the last one is always told
    QCOMPARE(enLaCarpeta(), todo);
    struct stat suyo = {};
    struct stat nuestro = {};
    const auto foto = todo.firstKey();
    QVERIFY(stat(qPrintable(media + u"/DCIM/"_s + foto), &suyo) == 0 &&
            stat(qPrintable(fotos + u'/' + foto), &nuestro) == 0);
    QCOMPARE(nuestro.st_mtime, suyo.st_mtime);
    QCOMPARE(nuestro.st_mode & 0777, 0600U);

    // Nothing new: no file is opened. The owner moving photos to folders of theirs brings none of them back.
    QVERIFY(QDir().mkpath(fotos + u"/2026/Verano"_s));
    QVERIFY(QFile::rename(fotos + u'/' + foto, fotos + u"/2026/Verano/"_s + foto.section(u'/', -1)));
    const auto abiertos = [&] {
        const auto cuentas = telefono->orden({{u"orden"_s, u"contar"_s}})[u"cuentas"_s];
        return cuentas[u"peticiones"_s][u"afc:Open"_s].toInt();
    };
    const auto antes = abiertos();
    const auto segunda = copiar();
    QCOMPARE(segunda.codigo, 0);
    QCOMPARE(segunda[u"fin"_s][u"saltados"_s].toInt(), todo.size());
    QCOMPARE(segunda[u"fin"_s][u"bytes"_s].toInt(), 0);
    QVERIFY(abiertos() - antes <= 2); // the phone's own list of photos
    // Without the notes the bytes tell as much; once.
    QVERIFY(QFile::remove(fotos + u"/.vellora-huellas-"_s + udid));
    QCOMPARE(copiar()[u"fin"_s][u"saltados"_s].toInt(), todo.size());
    QCOMPARE(copiar()[u"fin"_s][u"bytes"_s].toInt(), 0);
    QCOMPARE(enLaCarpeta().size(), todo.size());

    // A photo more, and one that the phone has edited since.
    QVERIFY(escribirFichero(media + u"/DCIM/102APPLE/IMG_2001.HEIC"_s, QByteArray(70'000, 'n')));
    QVERIFY(escribirFichero(media + u"/PhotoData/Mutations/DCIM/100APPLE/IMG_0002/Adjustments/FullSizeRender.jpg"_s,
                            "retocada"));
    QVERIFY(escribirFichero(media + u"/PhotoData/Mutations/DCIM/100APPLE/IMG_0002/Adjustments/Adjustments.plist"_s,
                            "cómo"));
    QVERIFY(
        escribirFichero(media + u"/PhotoData/Mutations/DCIM/100APPLE/IMG_0002/Adjustments/Penultimate.jpg"_s, "no"));
    const auto tercera = copiar();
    QCOMPARE(tercera[u"fin"_s][u"copiados"_s].toInt(), 3);
    QCOMPARE(leerFichero(fotos + u"/102APPLE/IMG_2001.HEIC"_s), QByteArray(70'000, 'n'));
    QCOMPARE(leerFichero(fotos + u"/100APPLE/IMG_E0002.JPG"_s), QByteArray("retocada"));
    QCOMPARE(leerFichero(fotos + u"/100APPLE/IMG_0002.AAE"_s), QByteArray("cómo"));

    // What only iCloud has is told in words.
    QVERIFY(QFile::remove(media + u"/DCIM/100APPLE/IMG_0001.JPG"_s));
    QVERIFY(escribirFichero(media + u"/DCIM/102APPLE/IMG_2002.HEIC"_s, "otra más"));
    QVERIFY(copiar().todo().contains(u"1 de tus fotos no están en el iPhone: solo las tiene iCloud"));
}

void PruebaCarrete::copiarSinPisarNada()
{
    const auto todo = enElTelefono();
    const auto nombres = todo.keys();
    // Other photos under the phone's names: one of the same size, one longer; and what other programs leave behind.
    const auto otra = QByteArray(todo[nombres[0]].size(), 'x');
    QVERIFY(escribirFichero(fotos + u'/' + nombres[0], otra));
    QVERIFY(escribirFichero(fotos + u'/' + nombres[1], "otra foto, más larga o más corta"));
    QVERIFY(escribirFichero(fotos + u'/' + nombres[2], todo[nombres[2]].first(todo[nombres[2]].size() / 2)));
    QVERIFY(escribirFichero(fotos + u'/' + nombres[3], {}));
    QVERIFY(escribirFichero(fotos + u'/' + nombres[4], todo[nombres[4]])); // whole, of today
    QVERIFY(escribirFichero(fotos + u"/.vellora-parcial-3"_s, "de una muerte"));
    for (int vez = 0; vez < 2; ++vez) {
        const auto hecho = copiar();
        QCOMPARE(hecho.codigo, 0);
        QCOMPARE(hecho[u"fin"_s][u"saltados"_s].toInt(), vez == 0 ? 1 : todo.size());
        auto esperado = todo;
        const auto segundo = [](QString nombre) {
            return nombre.insert(nombre.lastIndexOf(u'.'), u" (2)"_s);
        };
        esperado[nombres[0]] = otra;
        esperado[segundo(nombres[0])] = todo[nombres[0]];
        esperado[nombres[1]] = "otra foto, más larga o más corta";
        esperado[segundo(nombres[1])] = todo[nombres[1]];
        // What begins like the new one may be whole by itself.
        esperado[nombres[2]] = todo[nombres[2]].first(todo[nombres[2]].size() / 2);
        esperado[segundo(nombres[2])] = todo[nombres[2]];
        esperado[nombres[3]] = {};
        esperado[segundo(nombres[3])] = todo[nombres[3]];
        QCOMPARE(enLaCarpeta(), esperado);
    }
    // A link where a folder should be leads nowhere.
    QVERIFY(QDir().mkpath(casa->filePath(u"fuera"_s)));
    QVERIFY(QFile::link(casa->filePath(u"fuera"_s), fotos + u"/103APPLE"_s));
    QVERIFY(escribirFichero(media + u"/DCIM/103APPLE/IMG_3001.JPG"_s, "x"));
    QCOMPARE(copiar().fallos.size(), 1);
    QVERIFY(QDir(casa->filePath(u"fuera"_s)).isEmpty());
}

void PruebaCarrete::copiarPorContenido()
{
    // One name, size and second in three albums, which come one after the other; other bytes in each.
    for (const char letra : {'a', 'b', 'c'}) {
        const auto nueva = media + u"/DCIM/%1APPLE/IMG_0700.JPG"_s.arg(300 + letra - 'a');
        QVERIFY(escribirFichero(nueva, QByteArray(50'000, letra)) && ponFecha(nueva, 1'700'000'000));
        QCOMPARE(copiar().codigo, 0);
        QVERIFY(enLaCarpeta().values().contains(QByteArray(50'000, letra)));
    }
    QCOMPARE(enLaCarpeta(), enElTelefono());
    // The same names in another folder of one phone, without notes: two there, of which one is the phone's.
    const auto copia = fotos + u"/300APPLE/IMG_0700.JPG"_s;
    QVERIFY(QFile::remove(fotos + u"/.vellora-huellas-"_s + udid) && QFile::remove(copia));
    QCOMPARE(copiar()[u"fin"_s][u"copiados"_s].toInt(), 1);
    QCOMPARE(leerFichero(copia), QByteArray(50'000, 'a'));

    // A copy that was damaged, its size and date kept, stays; the photo comes again beside it, once.
    const QByteArray ceros(50'000, '\0');
    QVERIFY(escribirFichero(copia, ceros) && ponFecha(copia, 1'700'000'000));
    for (const int nuevos : {1, 0}) {
        QCOMPARE(copiar()[u"fin"_s][u"copiados"_s].toInt(), nuevos);
        QCOMPARE(leerFichero(copia), ceros);
        QCOMPARE(leerFichero(fotos + u"/300APPLE/IMG_0700 (2).JPG"_s), QByteArray(50'000, 'a'));
    }
    // A photo of the phone that was changed while its size and date stayed.
    const auto otra = media + u"/DCIM/301APPLE/IMG_0700.JPG"_s;
    QVERIFY(QFile::remove(otra) && escribirFichero(otra, QByteArray(50'000, 'B')) && ponFecha(otra, 1'700'000'000));
    QCOMPARE(copiar()[u"fin"_s][u"copiados"_s].toInt(), 1);
    QCOMPARE(leerFichero(fotos + u"/301APPLE/IMG_0700.JPG"_s), QByteArray(50'000, 'b'));
    QCOMPARE(leerFichero(fotos + u"/301APPLE/IMG_0700 (2).JPG"_s), QByteArray(50'000, 'B'));
}

void PruebaCarrete::copiarLoDeFueraDelCarrete()
{
    const auto dentro = enElTelefono();
    const QByteArray grupo("/PhotoData/CPLAssets/group7/");
    const auto deFuera = [&](const QByteArray &nombre) {
        return media + QString::fromUtf8(grupo + nombre);
    };
    QVERIFY(escribirFichero(deFuera("0A-B.JPG"), "de fuera"));
    QVERIFY(escribirFichero(media + u"/PhotoData/Mutations/PhotoData/CPLAssets/group7/0A-B/Adjustments/"
                                    "FullSizeRender.jpg"_s,
                            "de fuera, retocada"));
    QVERIFY(CopiaDePrueba::sql(
        media + u"/PhotoData/Photos.sqlite"_s,
        "INSERT INTO ZASSET (ZDIRECTORY, ZFILENAME, ZTRASHEDSTATE, ZHIDDEN) VALUES "
        "('PhotoData/CPLAssets/group7', '0A-B.JPG', 0, 1), ('PhotoData/CPLAssets/group7', 'EN-LA-NUBE.JPG', 0, 0), "
        "('PhotoData/PhotoCloudSharingData/1/2/100CLOUD', 'X.JPG', 0, 0), "
        "('PhotoData/PhotoCloudSharingData/1/2/100CLOUD', 'Y.JPG', 0, 0), "
        "('PhotoData/PhotoCloudSharingData/1/2/100CLOUD', 'BORRADA.JPG', 1, 0), "
        "('PhotoData/Sync/100SYNCD', 'IMG_1.JPG', 0, 0), ('PhotoData/Otra', 'Z.JPG', 0, 0); "
        "INSERT INTO ZGENERICALBUM (ZKIND, ZTITLE) VALUES (1505, 'Los' || char(10) || 'abuelos')"));
    const auto hecho = copiar();
    QCOMPARE(hecho.codigo, 0);
    auto esperado = dentro;
    esperado[u"CPLAssets/group7/0A-B.JPG"_s] = "de fuera";
    esperado[u"CPLAssets/group7/0A-B_E.JPG"_s] = "de fuera, retocada";
    QCOMPARE(enLaCarpeta(), esperado);
    QCOMPARE(copiar()[u"fin"_s][u"saltados"_s].toInt(), esperado.size());
    // What stays behind is counted and named.
    for (const auto &frase : {u"1 de tus fotos no están en el iPhone: solo las tiene iCloud"_s,
                              u"álbumes compartidos («Los abuelos») que no se copian: 2."_s,
                              u"un ordenador pasó a este iPhone"_s, u"de otras apps y que no se copian: 1."_s})
        QVERIFY2(hecho.todo().contains(frase), qPrintable(hecho.todo()));
    // Shown like the others, and told apart.
    const auto vista = motor({u"listar-carrete"_s, udid, fotos});
    int aparte = 0;
    for (const auto &uno : vista.carrete) {
        const auto foto = uno.toObject();
        if (!foto[u"solo_se_copia"_s].toBool())
            continue;
        ++aparte;
        QCOMPARE(foto[u"elemento"_s].toString(), u"CPLAssets/group7/0A-B"_s);
        QCOMPARE(foto[u"estado"_s].toString(), u"oculta"_s);
        QVERIFY(foto[u"copiado"_s].toBool());
    }
    QCOMPARE(aparte, 2);
    const auto ruta = QString::fromUtf8(grupo + "0A-B.JPG");
    QVERIFY(QFile::remove(fotos + u"/CPLAssets/group7/0A-B.JPG"_s));
    QCOMPARE(motor({u"copiar-elegidas"_s, udid, lista({ruta}), fotos})[u"fin"_s][u"copiados"_s].toInt(), 1);
    // And never deleted, by no way.
    QVERIFY(
        motor({u"borrar-elegidas"_s, udid, lista({ruta}), fotos}, true).todo().contains(u"no es una foto del carrete"));
    QCOMPARE(liberar(true)[u"fin"_s][u"borrados"_s].toInt(), dentro.size());
    motor({u"borrar-biblioteca-fotos"_s, udid}, true);
    motor({u"borrar-fotos-iphone"_s, udid}, true);
    QCOMPARE(leerFichero(deFuera("0A-B.JPG")), QByteArray("de fuera"));
    QCOMPARE(CopiaDePrueba::contenido(media + u"/PhotoData/Mutations/PhotoData"_s).size(), 1);
}

void PruebaCarrete::copiarNombresRaros()
{
    QVERIFY(QDir(media + u"/DCIM"_s).removeRecursively());
    const auto dcim = media.toUtf8() + "/DCIM/100APPLE/";
    QVERIFY(QDir().mkpath(QString::fromUtf8(dcim)));
    const auto poner = [&](const QByteArray &nombre, const QByteArray &bytes) {
        const vellora::Descriptor fichero(open((dcim + nombre).constData(), O_WRONLY | O_CREAT | O_EXCL, 0600));
        return fichero && write(*fichero, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
    };
    // Not UTF-8: two that differ in such bytes alone. Ten folders deep.
    QVERIFY(poner("IMG_\xFF.JPG", "uno") && poner("IMG_\xFE.JPG", "dos"));
    const auto honda = u"/DCIM/1/2/3/4/5/6/7/8/9/10/IMG_0001.JPG"_s;
    QVERIFY(escribirFichero(media + honda, "honda"));
    // Too large for the disk, which costs nobody else.
    QVERIFY(poner("GRANDE.MOV", QByteArray(3'000'000, 'g')) && poner("IMG_0002.JPG", "normal"));
    qputenv("CONFIRMADO", "NO");
    const auto hecho = ejecutar(u"sh"_s, {u"-c"_s, u"trap '' XFSZ; ulimit -f 4000; exec \"$0\" \"$@\""_s,
                                          QStringLiteral(MOTOR), u"copiar"_s, udid, fotos});
    QCOMPARE(hecho.codigo, 1);
    QVERIFY2(hecho.salida.contains("tan grandes"), hecho.salida.constData());
    auto todo = enLaCarpeta();
    QCOMPARE(todo.size(), 4);
    QCOMPARE(todo.value(u"1/2/3/4/5/6/7/8/9/10/IMG_0001.JPG"_s), QByteArray("honda"));
    QCOMPARE(todo.value(u"100APPLE/IMG_0002.JPG"_s), QByteArray("normal"));
    QVERIFY(todo.values().contains("uno") && todo.values().contains("dos"));
    for (const auto &nombre : todo.keys())
        QVERIFY2(!nombre.contains(QChar::ReplacementCharacter), qPrintable(nombre));
    // Found again under their plain names.
    const auto otra = copiar();
    // Qt removes no such files.
    for (const QByteArray nombre : {"IMG_\xFF.JPG", "IMG_\xFE.JPG"})
        QCOMPARE(unlink((dcim + nombre).constData()), 0);
    QCOMPARE(otra[u"fin"_s][u"copiados"_s].toInt(), 1);
    QCOMPARE(otra[u"fin"_s][u"saltados"_s].toInt(), 4);
}

void PruebaCarrete::copiarDosALaVez()
{
    const auto todo = enElTelefono();
    QCOMPARE(copiar().codigo, 0);
    QVERIFY(escribirFichero(media + u"/DCIM/106APPLE/IMG_6001.MOV"_s, QByteArray(30'000'000, 'v')));
    QVERIFY(telefono->orden({{u"orden"_s, u"frenar"_s}, {u"bytes_por_segundo"_s, 300'000}})[u"bien"_s].toBool());
    QProcess lento;
    lento.start(QStringLiteral(MOTOR), {u"copiar"_s, udid, fotos});
    const auto escribiendo = [&] {
        return !QDir(fotos).entryList({u".vellora-parcial-*"_s}, QDir::Files | QDir::Hidden).isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(escribiendo(), 30'000);
    // A second one leaves the folder to the first; so does a deletion.
    const auto segundo = copiar();
    QVERIFY2(segundo.codigo == 1 && segundo.todo().contains(u"Otro programa está escribiendo"),
             qPrintable(segundo.todo()));
    const auto borrado = liberar(true);
    QVERIFY2(borrado.todo().contains(u"Otro programa está escribiendo"), qPrintable(borrado.todo()));
    QCOMPARE(enElTelefono().size(), todo.size() + 1);
    QVERIFY(lento.state() == QProcess::Running && escribiendo());
    lento.kill();
    QVERIFY(lento.waitForFinished());
    QVERIFY(telefono->orden({{u"orden"_s, u"frenar"_s}, {u"bytes_por_segundo"_s, 0}})[u"bien"_s].toBool());
    // The dead keeps nobody out.
    QCOMPARE(copiar().codigo, 0);
    QCOMPARE(enLaCarpeta(), enElTelefono());
    QVERIFY(todo.size() < enLaCarpeta().size() && !escribiendo());
}

void PruebaCarrete::copiarLoQueSePueda()
{
    const auto todo = enElTelefono();
    QVERIFY(fallar(u"ReadDir:/DCIM/101APPLE"_s, 10));
    QVERIFY(fallar(u"Open:/DCIM/100APPLE/IMG_0001.JPG"_s, 10));
    const auto hecho = copiar();
    QCOMPARE(hecho.codigo, 1);
    QCOMPARE(hecho.fallos.size(), 2);
    QVERIFY(hecho.fallos[0][u"motivo"_s].toString().contains(u"El iPhone no deja tocarlo: /DCIM/101APPLE"));
    QCOMPARE(hecho[u"fin"_s][u"fallos"_s].toInt(), 2);
    QCOMPARE(enLaCarpeta().size(), todo.size() - 1 - QDir(media + u"/DCIM/101APPLE"_s).count() + 2);
    QVERIFY(fallar({}, 0) || true);
    QVERIFY(
        telefono->orden({{u"orden"_s, u"fallar"_s}, {u"peticion"_s, u""_s}, {u"error"_s, QJsonValue::Null}})[u"bien"_s]
            .toBool());
    QCOMPARE(copiar().codigo, 0);
    QCOMPARE(enLaCarpeta(), todo);
    // A folder that nobody can write to, and one that is a file.
    QVERIFY(escribirFichero(casa->filePath(u"fichero"_s), "x"));
    const auto negada = motor({u"copiar"_s, udid, casa->filePath(u"fichero"_s)});
    QVERIFY(negada.codigo == 1 && negada.todo().contains(u"No puedo escribir en la carpeta"));
}

void PruebaCarrete::copiarSinCable()
{
    for (int i = 0; i < 6; ++i)
        QVERIFY(
            escribirFichero(media + u"/DCIM/104APPLE/IMG_400%1.MOV"_s.arg(i), QByteArray(3'000'000, char('a' + i))));
    const auto todo = enElTelefono();
    QVERIFY(
        telefono
            ->orden(
                {{u"orden"_s, u"cortar"_s}, {u"servicio"_s, u"com.apple.afc"_s}, {u"bytes"_s, 6'000'000}})[u"bien"_s]
            .toBool());
    const auto cortada = copiar();
    QCOMPARE(cortada.codigo, 1);
    QVERIFY2(cortada.todo().contains(u"ha dejado de responder"), qPrintable(cortada.todo()));
    const auto quedo = enLaCarpeta();
    QVERIFY(quedo.size() < todo.size());
    for (auto it = quedo.cbegin(); it != quedo.cend(); ++it)
        QCOMPARE(it.value(), todo[it.key()]);
    QVERIFY(telefono->orden(u"conectar"_s));
    const auto resto = copiar();
    QCOMPARE(resto.codigo, 0);
    QCOMPARE(resto[u"fin"_s][u"saltados"_s].toInt(), quedo.size());
    QCOMPARE(enLaCarpeta(), todo);
}

void PruebaCarrete::copiarSinTelefono()
{
    QVERIFY(telefono->orden(u"bloquear"_s));
    QVERIFY(copiar().todo().contains(u"El iPhone está bloqueado"));
    QVERIFY(telefono->orden(u"desconectar"_s));
    const auto sinEl = copiar();
    QVERIFY(sinEl.codigo == 1 && sinEl.todo().contains(u"No veo ese iPhone"));
    QVERIFY(!QDir(fotos).exists());
}

void PruebaCarrete::copiarElegidas()
{
    const QStringList rutas{u"/DCIM/100APPLE/IMG_0003.JPG"_s, u"/DCIM/100APPLE/IMG_0003.MOV"_s,
                            u"/DCIM/100APPLE/IMG_9999.JPG"_s};
    const auto hecho = motor({u"copiar-elegidas"_s, udid, lista(rutas), fotos});
    QCOMPARE(hecho[u"fin"_s][u"copiados"_s].toInt(), 2);
    QCOMPARE(hecho.fallos.size(), 1);
    QCOMPARE(enLaCarpeta().keys(), (QStringList{u"100APPLE/IMG_0003.JPG"_s, u"100APPLE/IMG_0003.MOV"_s}));
    for (const auto &mala : {u"/etc/passwd"_s, u"/DCIM/../x"_s, u"/PhotoData/Photos.sqlite"_s, u"DCIM/a.jpg"_s})
        QVERIFY(
            motor({u"copiar-elegidas"_s, udid, lista({mala}), fotos}).todo().contains(u"no es una foto del carrete"));
}

void PruebaCarrete::liberarSoloPlanea()
{
    const auto todo = enElTelefono();
    QCOMPARE(liberar(false)[u"plan"_s][u"a_borrar"_s].toInt(), 0);
    QCOMPARE(liberar(true)[u"fin"_s][u"borrados"_s].toInt(), 0); // nor is anything left behind
    QVERIFY(!QDir(fotos).exists() && enElTelefono() == todo);
    QCOMPARE(copiar().codigo, 0);
    QVERIFY(QFile::remove(fotos + u"/100APPLE/IMG_0003.MOV"_s)); // half of a Live Photo
    qputenv("CONFIRMADO", "no");
    const auto plan = liberar(false);
    QCOMPARE(plan.codigo, 0);
    QCOMPARE(plan[u"plan"_s][u"se_quedan"_s].toInt(), 2);
    QCOMPARE(plan[u"plan"_s][u"a_borrar"_s].toInt(), todo.size() - 2);
    QVERIFY(!plan.avisos.contains(u"fin"_s));
    QCOMPARE(enElTelefono(), todo);
    QVERIFY(QFileInfo::exists(media + u"/PhotoData/Photos.sqlite"_s));
}

void PruebaCarrete::liberarLoCopiado()
{
    QCOMPARE(copiar().codigo, 0);
    const auto todo = enElTelefono();
    QVERIFY(escribirFichero(media + u"/DCIM/105APPLE/IMG_5001.JPG"_s, "nueva, sin copiar"));
    const auto hecho = liberar(true);
    QCOMPARE(hecho.codigo, 0);
    QCOMPARE(hecho[u"fin"_s][u"borrados"_s].toInt(), todo.size());
    QCOMPARE(hecho[u"progreso"_s][u"hechos"_s].toInt(), todo.size());
    QCOMPARE(hecho[u"fin"_s][u"quedan_en_carrete"_s].toInt(), 1);
    QVERIFY(hecho[u"fin"_s][u"lista_borrada"_s].toBool());
    QCOMPARE(enElTelefono().keys(), QStringList{u"105APPLE/IMG_5001.JPG"_s});
    QCOMPARE(enLaCarpeta(), todo);
    QVERIFY(!QFileInfo::exists(media + u"/PhotoData/Photos.sqlite"_s));
    const auto apuntado = leerFichero(fotos + u"/Borradas del iPhone.txt"_s);
    QCOMPARE(apuntado.count('\n'), todo.size());
    QVERIFY(apuntado.contains("/DCIM/100APPLE/IMG_0003.MOV\t"));
}

void PruebaCarrete::liberarSoloConPrueba_data()
{
    QTest::addColumn<QString>("caso");
    QTest::addColumn<int>("seVa");
    QTest::newRow("copy damaged, its size the same") << u"dañada"_s << 0;
    QTest::newRow("copy of another photo, named, sized and dated alike, without notes") << u"otra"_s << 0;
    QTest::newRow("phone's file changed since") << u"cambiada"_s << 0;
    QTest::newRow("phone's file replaced, its size and date kept") << u"sustituida"_s << 0;
    QTest::newRow("phone's bytes changed in their place, a day later") << u"reescrita"_s << 0;
    QTest::newRow("note of a former version, phone's bytes changed") << u"nota antigua"_s << 0;
    QTest::newRow("unchanged, copied yesterday") << u"ayer"_s << 1;
    QTest::newRow("copy cut off") << u"cortada"_s << 0;
    QTest::newRow("copy is a link") << u"enlace"_s << 0;
    QTest::newRow("copied by other means") << u"sin notas"_s << 1;
    QTest::newRow("moved by the owner") << u"movida"_s << 1;
}

void PruebaCarrete::liberarSoloConPrueba()
{
    QFETCH(const QString, caso);
    QFETCH(const int, seVa);
    // One photo in the roll.
    QVERIFY(QDir(media + u"/DCIM"_s).removeRecursively());
    const auto foto = media + u"/DCIM/100APPLE/IMG_0001.JPG"_s;
    const auto copia = fotos + u"/100APPLE/IMG_0001.JPG"_s;
    const QByteArray bytes(200'000, 'f');
    QVERIFY(escribirFichero(foto, bytes) && ponFecha(foto, 1'700'000'000));
    QCOMPARE(copiar().codigo, 0);
    const auto notas = fotos + u"/.vellora-huellas-"_s + udid;
    if (caso == u"dañada")
        QVERIFY(escribirFichero(copia, QByteArray(bytes).replace(150'000, 1, "x")) && ponFecha(copia, 1'700'000'000));
    if (caso == u"otra")
        QVERIFY(QFile::remove(notas) && escribirFichero(copia, QByteArray(200'000, 'o')) &&
                ponFecha(copia, 1'700'000'000));
    if (caso == u"cambiada")
        QVERIFY(escribirFichero(foto, QByteArray(200'000, 'F')) && ponFecha(foto, 1'700'000'999));
    // On a disk that keeps when files were made a file put in its place is told by that.
    if (caso == u"sustituida")
        QVERIFY(escribirFichero(foto + u".nueva"_s, QByteArray(200'000, 'F')) && QFile::remove(foto) &&
                QFile::rename(foto + u".nueva"_s, foto) && ponFecha(foto, 1'700'000'000));
    if (caso == u"reescrita" || caso == u"nota antigua")
        QVERIFY(escribirFichero(foto, QByteArray(200'000, 'F')) && ponFecha(foto, 1'700'000'000));
    if (caso == u"reescrita" || caso == u"ayer") {
        auto partes = leerFichero(notas).trimmed().split('\t');
        QCOMPARE(partes.size(), 11);
        partes[5] = QByteArray::number(partes[5].toLongLong() - 86'400'000);
        QVERIFY(escribirFichero(notas, partes.join('\t') + '\n'));
    }
    if (caso == u"nota antigua")
        QVERIFY(escribirFichero(notas, leerFichero(notas).split('\t').first(5).join('\t') + '\n'));
    if (caso == u"cortada")
        QVERIFY(QFile::resize(copia, 100'000));
    if (caso == u"enlace")
        QVERIFY(QFile::rename(copia, casa->filePath(u"f"_s)) && QFile::link(casa->filePath(u"f"_s), copia));
    if (caso == u"sin notas")
        QVERIFY(QFile::remove(notas) && escribirFichero(copia, bytes));
    if (caso == u"movida")
        QVERIFY(QDir().mkpath(fotos + u"/2023"_s) && QFile::rename(copia, fotos + u"/2023/IMG_0001.JPG"_s));
    const auto hecho = liberar(true);
    QCOMPARE(hecho[u"fin"_s][u"borrados"_s].toInt(), seVa);
    QCOMPARE(QFileInfo::exists(foto), seVa == 0);
    // The phone's list goes only when a photo has.
    QCOMPARE(QFileInfo::exists(media + u"/PhotoData/Photos.sqlite"_s), seVa == 0);
}

void PruebaCarrete::liberarSinCable()
{
    QCOMPARE(copiar().codigo, 0);
    const auto todo = enElTelefono();
    QVERIFY(QFile::remove(fotos + u"/.vellora-huellas-"_s + udid)); // so that the phone's bytes have to be read
    QVERIFY(
        telefono
            ->orden({{u"orden"_s, u"cortar"_s}, {u"servicio"_s, u"com.apple.afc"_s}, {u"bytes"_s, 60'000}})[u"bien"_s]
            .toBool());
    const auto cortada = liberar(true);
    QVERIFY2(cortada.codigo == 1 && cortada.todo().contains(u"ha dejado de responder"), qPrintable(cortada.todo()));
    const auto quedan = enElTelefono();
    for (auto it = quedan.cbegin(); it != quedan.cend(); ++it)
        QCOMPARE(it.value(), todo[it.key()]);
    QCOMPARE(enLaCarpeta(), todo);
    QVERIFY(telefono->orden(u"conectar"_s));
    QCOMPARE(liberar(true)[u"fin"_s][u"quedan_en_carrete"_s].toInt(), 0);
}

void PruebaCarrete::listar()
{
    QCOMPARE(copiar().codigo, 0);
    QVERIFY(QFile::remove(fotos + u"/100APPLE/IMG_0001.JPG"_s));
    // A video that the phone lists as one of its own is no half of a Live Photo.
    QVERIFY(escribirFichero(media + u"/DCIM/100APPLE/IMG_0001.MOV"_s, "vídeo"));
    QVERIFY(CopiaDePrueba::sql(media + u"/PhotoData/Photos.sqlite"_s,
                               "INSERT INTO ZASSET (ZDIRECTORY, ZFILENAME, ZTRASHEDSTATE, ZHIDDEN) VALUES "
                               "('DCIM/100APPLE', 'IMG_0001.MOV', 0, 0)"));
    const auto hecho = motor({u"listar-carrete"_s, udid, fotos});
    QCOMPARE(hecho.codigo, 0);
    QHash<QString, QJsonObject> porNombre;
    for (const auto &uno : hecho.carrete)
        porNombre[uno[u"nombre"_s].toString()] = uno.toObject();
    QCOMPARE(porNombre.size(), enElTelefono().size());
    QCOMPARE(porNombre[u"IMG_0001.JPG"_s][u"copiado"_s].toBool(), false);
    QCOMPARE(porNombre[u"IMG_0002.JPG"_s][u"copiado"_s].toBool(), true);
    QCOMPARE(porNombre[u"IMG_0002.JPG"_s][u"ruta"_s].toString(), u"/DCIM/100APPLE/IMG_0002.JPG"_s);
    QCOMPARE(porNombre[u"IMG_0004.JPG"_s][u"estado"_s].toString(), u"oculta"_s);
    QCOMPARE(porNombre[u"IMG_1001.JPG"_s][u"estado"_s].toString(), u"papelera"_s);
    QCOMPARE(porNombre[u"IMG_0003.MOV"_s][u"elemento"_s], porNombre[u"IMG_0003.JPG"_s][u"elemento"_s]);
    QVERIFY(porNombre[u"IMG_0001.MOV"_s][u"elemento"_s] != porNombre[u"IMG_0001.JPG"_s][u"elemento"_s]);
    const auto retoques = porNombre.keys().filter(QRegularExpression(u"^IMG_E"_s));
    QVERIFY(!retoques.isEmpty());
    QCOMPARE(porNombre[retoques[0]][u"tipo"_s].toString(), u"retoque"_s);
    QCOMPARE(porNombre[retoques[0]][u"elemento"_s].toString(), u"100APPLE/IMG_"_s + retoques[0].mid(5, 4));
    // Without the phone's list all are visible.
    QVERIFY(QFile::remove(media + u"/PhotoData/Photos.sqlite"_s));
    QCOMPARE(motor({u"listar-carrete"_s, udid, fotos}).carrete.size(), porNombre.size());
}

void PruebaCarrete::recuperar_data()
{
    QTest::addColumn<bool>("sinCarrete");
    QTest::newRow("with the roll") << false;
    QTest::newRow("of a phone without photos") << true;
}

void PruebaCarrete::recuperar()
{
    QFETCH(const bool, sinCarrete);
    CopiaDePrueba copias;
    QVERIFY(copias.crearTelefono());
    const auto carrete = copias.telefono() + u"/media/DCIM"_s;
    if (sinCarrete)
        QVERIFY(QDir(carrete).removeRecursively() && QDir().mkpath(carrete));
    QVERIFY(copias.copiar(u"copias/U"_s, {}));
    const auto todo = CopiaDePrueba::contenido(carrete);
    const auto hecho = motor({u"recuperar-carrete"_s, u"U"_s, copias.ruta(u"copias"_s), fotos});
    QCOMPARE(hecho.codigo, 0);
    QCOMPARE(hecho[u"fin"_s][u"recuperadas"_s].toInt(), todo.size());
    QCOMPARE(enLaCarpeta(), todo);
    if (sinCarrete)
        return;
    // Again: all are there. One that the owner has changed stays, whatever its size and date; one that was cut off
    // comes whole beside what is left of it.
    const auto nombres = todo.keys();
    const auto conFechaDeAntes = [&](const QString &nombre, const QByteArray &bytes) {
        struct stat como = {};
        return stat(qPrintable(fotos + u'/' + nombre), &como) == 0 && escribirFichero(fotos + u'/' + nombre, bytes) &&
               ponFecha(fotos + u'/' + nombre, como.st_mtime);
    };
    const QList<QByteArray> otras{"la de la dueña", QByteArray(todo[nombres[1]].size(), 'd'),
                                  todo[nombres[2]].first(10), todo[nombres[3]] + "y algo más"};
    auto esperado = todo;
    for (qsizetype i = 0; i < otras.size(); ++i) {
        QVERIFY(conFechaDeAntes(nombres[i], otras[i]));
        esperado[nombres[i]] = otras[i];
        esperado[QString(nombres[i]).insert(nombres[i].lastIndexOf(u'.'), u" (2)"_s)] = todo[nombres[i]];
    }
    for (const auto nuevas : {otras.size(), qsizetype(0)}) {
        const auto otra = motor({u"recuperar-carrete"_s, u"U"_s, copias.ruta(u"copias"_s), fotos});
        QCOMPARE(otra[u"fin"_s][u"recuperadas"_s].toInteger(), nuevas);
        QCOMPARE(otra[u"fin"_s][u"saltadas"_s].toInteger(), todo.size() - nuevas);
        QCOMPARE(enLaCarpeta(), esperado);
    }
}

QTEST_GUILESS_MAIN(PruebaCarrete)
#include "PruebaCarrete.moc"

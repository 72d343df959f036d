#include "engine/Ordenes.h"

#include <array>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

struct Orden {
    QLatin1StringView nombre;
    int (*hacer)(const QStringList &, Avisos &);
    QLatin1StringView argumentos; ///< names of those that it needs, parted by blanks
};

constexpr std::array ordenes{
    Orden{"bateria"_L1, &bateria, "udid"_L1},
    Orden{"bateria-historial"_L1, &bateriaHistorial, "udid fichero"_L1},
    Orden{"borrar-biblioteca-fotos"_L1, &borrarBibliotecaFotos, "udid"_L1},
    Orden{"borrar-elegidas"_L1, &borrarElegidas, "udid lista carpeta"_L1},
    Orden{"borrar-elegidas-de-verdad"_L1, &borrarElegidasDeVerdad, "udid lista carpeta"_L1},
    Orden{"borrar-fotos-iphone"_L1, &borrarFotosIPhone, "udid"_L1},
    Orden{"comprobar-copia"_L1, &comprobarCopia, "udid copia"_L1},
    Orden{"contrasenas"_L1, &contrasenas, "udid copia"_L1},
    Orden{"copiar"_L1, &copiar, "udid destino"_L1},
    Orden{"copiar-elegidas"_L1, &copiarElegidas, "udid lista destino"_L1},
    Orden{"extraer"_L1, &extraer, "udid copias destino"_L1},
    Orden{"liberar"_L1, &liberar, "udid carpeta"_L1},
    Orden{"listar-carrete"_L1, &listarCarrete, "udid carpeta"_L1},
    Orden{"miniaturas"_L1, &miniaturas, "udid lista fotos carpeta"_L1},
    Orden{"recuperar-carrete"_L1, &recuperarCarrete, "udid copias destino"_L1},
    Orden{"red"_L1, &red, "udid"_L1},
};

} // namespace

int ejecutarOrden(const QStringList &argumentos, Avisos &avisar)
{
    const auto nombre = argumentos.value(0);
    for (const auto &orden : ordenes) {
        if (orden.nombre != nombre)
            continue;
        const auto nombres = QString(orden.argumentos).split(u' ');
        for (qsizetype i = 0; i < nombres.size(); ++i) {
            if (argumentos.value(i + 1).isEmpty())
                return avisar.error(u"A la orden «%1» le falta el dato «%2»."_s.arg(nombre, nombres[i]));
        }
        return orden.hacer(argumentos.mid(1), avisar);
    }
    if (nombre.isEmpty())
        return avisar.error(u"No se ha dicho qué hacer."_s);
    return avisar.error(u"No conozco la orden «%1»."_s.arg(nombre));
}

bool confirmado()
{
    return qEnvironmentVariable("CONFIRMADO") == "SI"_L1;
}

} // namespace vellora::motor

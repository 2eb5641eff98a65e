// The reference a headless pdeprint run is held against: a program that starts
// Qt's widgets and makes a printer, and does nothing else.

#include <QApplication>
#include <QPrinter>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QPrinter printer;
    return printer.isValid() ? 0 : 1;
}

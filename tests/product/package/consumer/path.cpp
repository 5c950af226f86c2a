// A program with one of the headers that need Qt's, whose flags pkg-config has to give as well.
#include <zvutil/ZvFilePath.h>

#include <QVariant>

#include <iostream>

int main()
{
    const zvutil::ZvFilePath path(L"C:/a b/c.txt");
    std::cout << QVariant::fromValue(path).toString().toStdString() << '\n';
    return 0;
}

#pragma once

#include <QCoreApplication>
#include <QFont>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QPagedPaintDevice;
class QPainter;

namespace workbench {

/// What stands above the content of each page.
struct PageTitle
{
    QString name;
    QString file; ///< its path, or empty
};

/// The part of a page that a printer or a PDF file has for content, in the device's dots.
struct Paper
{
    QSizeF size;
    double dotsPerInch = 0;

    static Paper of(const QPagedPaintDevice& device);
};

/// The largest number of pages that are printed.
constexpr int maxPages = 10'000;

/// A document that is laid out on pages: its title above, its content in black, the page's number below. Uses no
/// colours of the current style, since paper is white.
class Pages
{
    Q_DECLARE_TR_FUNCTIONS(workbench::Pages)

public:
    virtual ~Pages();
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;

    virtual int count() const = 0;
    /// Paints a page, counted from 0, in the dots of the paper.
    void paint(QPainter& painter, int page) const;

protected:
    Pages(const PageTitle& title, const Paper& paper);

    /// Returns the part of the paper between title and number.
    const QRectF& body() const;
    /// Returns so many points in dots.
    double points(double points) const;
    /// Returns \p font in a size that doesn't depend on the device.
    QFont sized(const QFont& font, double points) const;

    virtual void paintBody(QPainter& painter, int page) const = 0;

private:
    void paintTitle(QPainter& painter) const;

    PageTitle m_title;
    Paper m_paper;
    QFont m_nameFont;
    QFont m_smallFont;
    QRectF m_body;
};

} // namespace workbench

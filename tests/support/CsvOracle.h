#pragma once

#include <cstddef>
#include <locale>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zvtest {

/// What a CSV text means, byte by byte as the rules have it, and without regard to time.
class CsvOracle
{
public:
    /// Throws `std::invalid_argument` where the rules do.
    explicit CsvOracle(const std::string& text)
        : m_text(text)
    {
        if (text.empty())
            return;
        for (std::size_t p = 0; p < text.size(); ++p)
            p = step(p);
        close(text.size());
        if (m_column < m_columns && !m_rows.empty())
            m_rows.pop_back();
    }

    std::size_t rows() const { return m_rows.size(); }
    std::size_t columns() const { return m_columns; }

    /// A cell that nothing was stored in is empty.
    std::string cell(std::size_t row, std::size_t column) const
    {
        const std::vector<std::string>& cells = m_rows[row];
        return column < cells.size() ? cells[column] : std::string();
    }

private:
    std::size_t step(std::size_t p)
    {
        switch (m_text[p]) {
        case '\n':
            close(p);
            ++m_row;
            m_column = 0;
            m_rows.emplace_back();
            begin(p + 1);
            return p;
        case '\r':
            if (!m_end)
                m_end = p;
            return p;
        case '"':
            return quoted(p);
        case ',':
            close(p);
            begin(p + 1);
            return p;
        default:
            return p;
        }
    }

    void begin(std::size_t start)
    {
        m_start = start;
        m_end.reset();
        m_unescape = false;
    }

    std::size_t quoted(std::size_t p)
    {
        m_start = p + 1;
        std::size_t q = p + 1;
        while (q < m_text.size()) {
            if (m_text[q] != '"') {
                q += 1;
            } else if (q + 1 < m_text.size() && m_text[q + 1] == '"') {
                m_unescape = true;
                q += 2;
            } else {
                break;
            }
        }
        m_end = q;
        return q;
    }

    void close(std::size_t p)
    {
        std::string field = m_text.substr(m_start, m_end.value_or(p) - m_start);
        const auto isSpace = [](char c) {
            return std::use_facet<std::ctype<char>>(std::locale()).is(std::ctype_base::space, c);
        };
        while (!field.empty() && isSpace(field.back()))
            field.pop_back();
        while (!field.empty() && isSpace(field.front()))
            field.erase(0, 1);
        if (m_unescape) {
            std::size_t at = 0;
            while ((at = field.find("\"\"", at)) != std::string::npos)
                field.erase(at++, 1);
        }
        if (m_row == 0) {
            m_columns = m_column + 1;
            m_rows.resize(1);
        } else if (m_column >= m_columns) {
            throw std::invalid_argument(
                "CSV clipboard data invalid format: rows have different number of columns");
        }
        m_rows[m_row].push_back(field);
        ++m_column;
    }

    const std::string& m_text;
    std::vector<std::vector<std::string>> m_rows;
    std::size_t m_columns = 0;
    std::size_t m_row = 0;
    std::size_t m_column = 0;
    std::size_t m_start = 0;
    std::optional<std::size_t> m_end;
    bool m_unescape = false;
};

} // namespace zvtest

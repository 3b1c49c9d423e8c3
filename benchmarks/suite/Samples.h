#pragma once

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace zorvex_bench
{

/// What was measured, by document, library and quantity ("load", "heap", ...).
class Samples
{
public:
    using Key = std::tuple<std::string, std::string, std::string>;

    void Add(const std::string& document, const std::string& subject, const std::string& quantity,
             double value)
    {
        m_values[{document, subject, quantity}].push_back(value);
    }

    bool Has(const std::string& document, const std::string& subject,
             const std::string& quantity) const
    {
        return m_values.count({document, subject, quantity}) != 0;
    }

    double Median(const std::string& document, const std::string& subject,
                  const std::string& quantity) const
    {
        const auto found = m_values.find({document, subject, quantity});
        if (found == m_values.end())
        {
            throw std::logic_error(quantity + " of " + subject + " wasn't measured");
        }
        return MedianOf(found->second);
    }

    const std::map<Key, std::vector<double>>& All() const { return m_values; }

    static double MedianOf(std::vector<double> values)
    {
        std::sort(values.begin(), values.end());
        const std::size_t middle = values.size() / 2;
        return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
    }

private:
    std::map<Key, std::vector<double>> m_values;
};

}  // namespace zorvex_bench

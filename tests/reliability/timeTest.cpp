// SPDX-License-Identifier: MIT

#include "tests/reliability/timeTest.h"

namespace time_test {

std::string numbered(const std::function<std::string(int)>& make, std::size_t size)
{
    std::string result;
    for (int i = 0;; ++i) {
        const std::string next = make(i);
        if (result.size() + next.size() > size)
            return result;
        result += next;
    }
}

std::string nameOf(int number)
{
    std::string name = "_";
    do {
        name += static_cast<char>('a' + number % 26);
        number /= 26;
    } while (number > 0);
    return name;
}

std::string currentDefinition(const std::string& name, const std::string& statements)
{
    return "segmenttype(\"" + name + "\",x,x1,y1,x2,y2)" + statements + "endsegmenttype";
}

std::string doubling(int lines, const std::string& first)
{
    std::string text = nameOf(0) + "q=" + first + ";";
    for (int i = 1; i <= lines; ++i)
        text += nameOf(i) + "q=" + nameOf(i - 1) + "q+" + nameOf(i - 1) + "q;";
    return text + "return" + nameOf(lines) + "q;";
}

}  // namespace time_test

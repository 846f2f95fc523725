#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes bounds.txt: certified bounds of the peaks of motion laws, by Sollya's infnorm.

    /usr/bin/python3 make_bounds.py > bounds.txt

Sollya (https://www.sollya.org) encloses the largest magnitude by interval arithmetic in multiple
precision. Each line is a law, an order and the two bounds. The laws are those that are one
formula between (0, 0) and (1, 1).
"""

import subprocess

LAWS = {
    "Cubic": "3*x^2-2*x^3",
    "Quarter-Sine": "sin(pi*x/2)",
    "Quarter-Cosine": "1-cos(pi*x/2)",
    "Half-Cosine": "(1-cos(pi*x))/2",
    "3-4-5-Polynomial": "10*x^3-15*x^4+6*x^5",
    "4-5-6-7-Polynomial": "35*x^4-84*x^5+70*x^6-20*x^7",
    "5-6-7-8-9-Polynomial": "126*x^5-420*x^6+540*x^7-315*x^8+70*x^9",
    "True-Cycloidal": "x-sin(2*pi*x)/(2*pi)",
    "Double-Harmonic": "(1-cos(pi*x))/2-(1-cos(2*pi*x))/8",
    "6-7-8-9-10-11-Polynomial": "462*x^6-1980*x^7+3465*x^8-3080*x^9+1386*x^10-252*x^11",
    "8th-Degree-Polynomial":
        "6.09755*x^3-20.7804*x^5+26.73155*x^6-13.60965*x^7+2.56095*x^8",
    "Half-Cycloidal-Start": "x-sin(pi*x)/pi",
    "Half-Cycloidal-End": "x+sin(pi*x)/pi",
}


def main():
    program = ["prec=165!;", "diam=1b-36!;"]
    for name, formula in LAWS.items():
        derivative = formula
        for order in (1, 2, 3):
            derivative = f"diff({derivative})"
            program.append(f'b=abs(infnorm({derivative},[0;1]));')
            program.append(f'print("{name}",{order},round(inf(b),60,RD),round(sup(b),60,RU));')
    program.append("quit;")
    result = subprocess.run(["sollya"], input="\n".join(program) + "\n", capture_output=True, text=True,
                            check=True)
    for line in result.stdout.splitlines():
        if line.split(" ")[0] in LAWS:
            print(line)


if __name__ == "__main__":
    main()

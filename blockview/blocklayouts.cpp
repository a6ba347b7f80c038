#include "blocklayouts.h"

// clang-format off
const BlockLayout blockLayouts[blockLayoutCount] = {
    {1, 9, {30}, {}},                                   //  1 Version code
    {1, 9, {50}, {}},                                   //  2 Header
    {3, 9, {25, 6, 10}, {}},                            //  3 Content Summary
    {4, 9, {5, 18, 18, 18}, {}},                        //  4 Nodal Coordinates
    {0, 0, {}, {}},                                     //  5 (none)
    {4, 9, {20, 12, 12, 12}, {}},                       //  6 Global Body Properties
    {6, 8, {5, 18, 18, 18, 18, 18},                     //  7 Eigenvalues
     {"Mode", "Eigenvalue", "Hertz", "Radians", "Gen. Mass", "Gen. Stiff"}},
    {7, 9, {5, 18, 18, 18, 18, 18, 18},                 //  8 Mode Shapes
     {"ID", "dx", "dy", "dz", "ax", "ay", "az"}},
    {2, 9, {5, 18}, {}},                                //  9 Nodal Masses
    {5, 9, {30, 20, 18, 18, 18}, {}},                   // 10 Nodal Inertias
    {1, 9, {30}, {}},                                   // 11 Units
    {3, 9, {7, 7, 18}, {}},                             // 12 Generalized Stiffness
    {3, 9, {7, 7, 18}, {}},                             // 13 Generalized Mass
    {5, 11, {7, 7, 7, 7, 7}, {}},                       // 14 Element Faces
    {1, 9, {50}, {}},                                   // 15 Generalized Damping
    {6, 11, {14, 14, 14, 14, 14, 14}, {}},              // 16 Mode Shape Transformation
    {2, 9, {5, 7}, {}},                                 // 17 Interface Nodes
    {7, 9, {5, 18, 18, 18, 18, 18, 18},                 // 18 Stress Modes
     {"ID", "Sigma X", "Sigma Y", "Sigma Z", "Tau XY", "Tau XZ", "Tau YZ"}},
    {1, 9, {20}, {}},                                   // 19 Invariants 1
    {1, 9, {20}, {}},                                   // 20 Invariants 2
    {1, 9, {20}, {}},                                   // 21 Invariants 3
    {1, 9, {20}, {}},                                   // 22 Invariants 4
    {1, 9, {20}, {}},                                   // 23 Invariants 5
    {1, 9, {20}, {}},                                   // 24 Invariants 7
    {1, 9, {20}, {}},                                   // 25 Invariants 8
    {1, 9, {20}, {}},                                   // 26 Invariants 9
    {2, 9, {5, 20}, {}},                                // 27 Preloads
    {2, 9, {5, 30}, {}},                                // 28 Modal Loads
    {7, 9, {5, 18, 18, 18, 18, 18, 18},                 // 29 Strain Modes
     {"ID", "Epsilon X", "Epsilon Y", "Epsilon Z", "Gamma XY", "Gamma XZ", "Gamma YZ"}},
};
// clang-format on

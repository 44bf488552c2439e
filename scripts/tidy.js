'use strict';

// Runs clang-tidy on the C++ sources of a build, except those that passed before and have not changed since.
// usage: node scripts/tidy.js BUILD_FOLDER

const { execFile, execFileSync } = require('child_process');
const crypto = require('crypto');
const fs = require('fs');
const os = require('os');
const path = require('path');

const ROOT = path.dirname(__dirname);

// Maps each object, by its name in the build folder, to the project's own files that it was compiled from.
function readDependencies(buildDir) {
    const files = new Map();
    let current = [];
    const listing = execFileSync('ninja', ['-C', buildDir, '-t', 'deps'], { encoding: 'utf8', maxBuffer: 1 << 28 });
    for (const line of listing.split('\n')) {
        const object = /^(\S+): #deps/.exec(line);
        if (object) {
            current = [];
            files.set(object[1], current);
        } else if (line.startsWith('    ')) {
            const file = path.resolve(buildDir, line.trim());
            if (file.startsWith(ROOT + path.sep)) {
                current.push(file);
            }
        }
    }
    return files;
}

// Hashes everything that the result for a source depends on.
function keyOf(common, unit, files) {
    const hash = crypto.createHash('sha256').update(common).update(unit.command);
    for (const file of files) {
        hash.update(`\0${file}\0`).update(fs.readFileSync(file));
    }
    return hash.digest('hex');
}

function runClangTidy(buildDir, file) {
    return new Promise((resolve) => {
        const options = { encoding: 'utf8', maxBuffer: 1 << 26 };
        execFile('clang-tidy', ['--quiet', '-p', buildDir, file], options, (error, stdout, stderr) => {
            resolve(error ? stdout || stderr || error.message : null);
        });
    });
}

// Checks one source. True if it is clean.
async function check(buildDir, job) {
    const complaints = await runClangTidy(buildDir, job.file);
    if (complaints !== null) {
        process.stdout.write(complaints);
        return false;
    }
    fs.writeFileSync(job.stamp, job.key);
    return true;
}

function readStamp(stamp) {
    return fs.existsSync(stamp) ? fs.readFileSync(stamp, 'utf8') : '';
}

// Finds the sources that have to be checked.
function findJobs(buildDir) {
    const stampDir = path.join(buildDir, 'tidy');
    fs.mkdirSync(stampDir, { recursive: true });
    const version = execFileSync('clang-tidy', ['--version'], { encoding: 'utf8' });
    const common = version + fs.readFileSync(path.join(ROOT, '.clang-tidy'), 'utf8');
    const dependencies = readDependencies(buildDir);
    const units = JSON.parse(fs.readFileSync(path.join(buildDir, 'compile_commands.json'), 'utf8'));
    return units
        .filter((unit) => !unit.file.startsWith(buildDir + path.sep))
        .map((unit) => ({
            file: unit.file,
            stamp: path.join(stampDir, path.relative(ROOT, unit.file).replace(/[\\/]/g, '+')),
            key: keyOf(common, unit, dependencies.get(unit.output) || [unit.file]),
        }))
        .filter((job) => readStamp(job.stamp) !== job.key);
}

async function main(buildDir) {
    const jobs = findJobs(buildDir);
    let dirty = 0;
    const work = async () => {
        for (let job = jobs.shift(); job; job = jobs.shift()) {
            const isClean = await check(buildDir, job);
            dirty += isClean ? 0 : 1;
        }
    };
    await Promise.all(os.cpus().map(work));
    process.exitCode = dirty > 0 ? 1 : 0;
}

main(path.resolve(process.argv[2]));
